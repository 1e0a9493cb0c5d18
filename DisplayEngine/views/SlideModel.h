#pragma once

#include "media/BrandOverlaySettings.h"
#include "views/BrandOverlayView.h"
#include "views/Slide.h"
#include "views/SlideAppearance.h"

#include <QObject>
#include <QRectF>
#include <QSize>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// What the slide windows draw, shared by all of them (each screen shows the
// same item). Views report back by serial; only the first report about the slide
// on screen is passed on, so two screens failing on one file fail it once.
class SlideModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(sorvane::Slide slide READ slide NOTIFY slideChanged)
    Q_PROPERTY(QUrl preloadSource READ preloadSource NOTIFY preloadSourceChanged)
    Q_PROPERTY(sorvane::SlideAppearance appearance READ appearance NOTIFY appearanceChanged)
    Q_PROPERTY(sorvane::BrandOverlayView overlay READ overlay NOTIFY overlayChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)

public:
    explicit SlideModel(QObject *parent = nullptr);

    const Slide &slide() const { return m_slide; }
    // Gives the slide the next serial.
    void setSlide(Slide slide);
    QUrl preloadSource() const { return m_preload; }
    void setPreloadSource(const QUrl &source);
    const SlideAppearance &appearance() const { return m_appearance; }
    void setAppearance(const SlideAppearance &appearance);
    const BrandOverlayView &overlay() const { return m_overlay; }
    // settings must be normalised; logoSize is the decoded logo's size.
    void setOverlay(const BrandOverlayView &overlay, const BrandOverlaySettings &settings, QSize logoSize);
    bool paused() const { return m_paused; }
    void setPaused(bool paused);

    // The logo's rectangle on a window of this size.
    Q_INVOKABLE QRectF overlayRect(double width, double height) const;

    // From the views.
    Q_INVOKABLE void reportPresented(int serial);
    Q_INVOKABLE void reportEnded(int serial);
    Q_INVOKABLE void reportFailed(int serial, const QString &reason);

Q_SIGNALS:
    void slideChanged();
    void preloadSourceChanged();
    void appearanceChanged();
    void overlayChanged();
    void pausedChanged();

    // The slide on screen was drawn for the first time (by any window).
    void presented();
    // Reports about the slide with this serial (compare with slide().serial when
    // handled later: the show may have moved on).
    void ended(int serial);
    void failed(int serial, const QString &reason);

private:
    bool firstReport(int serial);

    Slide m_slide;
    QUrl m_preload;
    SlideAppearance m_appearance;
    BrandOverlayView m_overlay;
    BrandOverlaySettings m_overlaySettings;
    QSize m_logoSize;
    bool m_paused = false;
    int m_nextSerial = 1;
    int m_presentedSerial = 0;
    int m_reportedSerial = 0;
};

} // namespace sorvane
