#include "views/SlideModel.h"

#include "media/BrandOverlay.h"

namespace sorvane {

SlideModel::SlideModel(QObject *parent) : QObject(parent) { }

void SlideModel::setSlide(Slide slide)
{
    slide.serial = m_nextSerial++;
    m_slide = std::move(slide);
    Q_EMIT slideChanged();
}

void SlideModel::setPreloadSource(const QUrl &source)
{
    if (source == m_preload)
        return;
    m_preload = source;
    Q_EMIT preloadSourceChanged();
}

void SlideModel::setAppearance(const SlideAppearance &appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    Q_EMIT appearanceChanged();
}

void SlideModel::setOverlay(const BrandOverlayView &overlay, const BrandOverlaySettings &settings, QSize logoSize)
{
    m_overlaySettings = settings;
    m_logoSize = logoSize;
    m_overlay = overlay;
    Q_EMIT overlayChanged();
}

void SlideModel::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    Q_EMIT pausedChanged();
}

QRectF SlideModel::overlayRect(double width, double height) const
{
    if (!m_overlay.visible)
        return {};
    return BrandOverlay::geometry(m_overlaySettings.corner, width, height, m_logoSize.width(), m_logoSize.height(),
        m_overlaySettings.sizePercent, m_overlaySettings.marginPercent);
}

void SlideModel::reportPresented(int serial)
{
    if (serial != m_slide.serial || serial == m_presentedSerial)
        return;
    m_presentedSerial = serial;
    Q_EMIT presented();
}

bool SlideModel::firstReport(int serial)
{
    if (serial != m_slide.serial || serial == m_reportedSerial)
        return false;
    m_reportedSerial = serial;
    return true;
}

void SlideModel::reportEnded(int serial)
{
    if (firstReport(serial))
        Q_EMIT ended(serial);
}

void SlideModel::reportFailed(int serial, const QString &reason)
{
    if (firstReport(serial))
        Q_EMIT failed(serial, reason);
}

} // namespace sorvane
