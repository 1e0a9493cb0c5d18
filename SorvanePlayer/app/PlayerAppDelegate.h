#pragma once

#include "core/PlayerControlsModel.h"
#include "core/PlayerKeyRouter.h"
#include "core/ResumeStore.h"
#include "slideshow/QtTimerScheduler.h"
#include "slideshow/SystemClock.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <optional>

namespace sorvane {

class BrandLogoCache;
class DisplaySleepInhibitor;
class OpenedBundle;
class PlayerCollageWall;
class PlayerControlsController;
class PlayerEngine;
class PlayerSlideModel;
class PlayerWindows;
struct OpenedBundleBranding;

// Owns the player's run: finds and opens the bundle, shows the holding screen or
// starts playback on every screen, follows screens that come and go, keeps the
// display awake while playing, routes keys and pointer, and tears it all down.
// No failure here ever reaches the viewer as a dialog.
class PlayerAppDelegate : public QObject {
    Q_OBJECT

public:
    struct Options {
        QString applicationFolder;
        QStringList bundleArguments;
        std::unique_ptr<DisplaySleepInhibitor> inhibitor;
    };

    explicit PlayerAppDelegate(Options options, QObject *parent = nullptr);
    ~PlayerAppDelegate() override;

    // The start-up sequence after the single-instance check.
    void start();
    void quit();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectHandlers();
    void showHolding(const OpenedBundleBranding *branding);
    void buildHoldingWindows();
    void closeHoldingWindows();
    void startPlayback(std::shared_ptr<OpenedBundle> bundle);
    void setUpSlides(const OpenedBundle &bundle);
    void watchScreens();
    void screensChanged();
    void setPointerHidden(bool hidden);
    void bringForward();
    void firstPhotoPresented();

    Options m_options;
    QQmlEngine m_qml;
    SystemClock m_clock;
    QtTimerScheduler m_timers;
    PlayerKeyRouter m_keys;
    PlayerControlsModel m_controlsModel;
    std::unique_ptr<PlayerControlsController> m_controls;
    ResumeStore m_resume;
    BrandLogoCache *m_logos = nullptr; // owned by the QML engine
    std::shared_ptr<OpenedBundle> m_bundle;
    std::unique_ptr<PlayerSlideModel> m_slides;
    std::unique_ptr<PlayerCollageWall> m_walls;
    std::unique_ptr<PlayerWindows> m_windows;
    std::unique_ptr<PlayerEngine> m_engine;
    QList<QPointer<QQuickWindow>> m_holdingWindows;
    QString m_holdingName;
    QUrl m_holdingLogo;
    QTimer m_screenSettle;
    bool m_holding = false;
    bool m_pointerHidden = false;
    bool m_anyPresented = false;
    bool m_quitting = false;
};

} // namespace sorvane
