#include "app/PlayerSlideModel.h"

#include "EngineLog.h"
#include "media/BrandOverlay.h"

namespace sorvane {

PlayerSlideModel::PlayerSlideModel(QObject *parent) : QObject(parent) { }

void PlayerSlideModel::setSlide(PlayerSlide slide)
{
    slide.serial = m_nextSerial++;
    m_slide = std::move(slide);
    Q_EMIT slideChanged();
}

void PlayerSlideModel::setPreloadSource(const QUrl &source)
{
    if (source == m_preload)
        return;
    m_preload = source;
    Q_EMIT preloadSourceChanged();
}

void PlayerSlideModel::setAppearance(const SlideAppearance &appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    Q_EMIT appearanceChanged();
}

void PlayerSlideModel::setOverlay(const BrandOverlayView &overlay, const BrandOverlaySettings &settings, QSize logoSize)
{
    m_overlaySettings = settings;
    m_logoSize = logoSize;
    m_overlay = overlay;
    Q_EMIT overlayChanged();
}

void PlayerSlideModel::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    Q_EMIT pausedChanged();
}

QRectF PlayerSlideModel::overlayRect(double width, double height) const
{
    if (!m_overlay.visible)
        return {};
    return BrandOverlay::geometry(m_overlaySettings.corner, width, height, m_logoSize.width(), m_logoSize.height(),
        m_overlaySettings.sizePercent, m_overlaySettings.marginPercent);
}

void PlayerSlideModel::reportPresented(int serial)
{
    if (serial != m_slide.serial || serial == m_presentedSerial)
        return;
    m_presentedSerial = serial;
    Q_EMIT presented();
}

bool PlayerSlideModel::firstReport(int serial)
{
    if (serial != m_slide.serial || serial == m_reportedSerial)
        return false;
    m_reportedSerial = serial;
    return true;
}

void PlayerSlideModel::reportEnded(int serial)
{
    if (firstReport(serial))
        Q_EMIT ended(serial);
}

void PlayerSlideModel::reportFailed(int serial, const QString &reason)
{
    if (!firstReport(serial))
        return;
    qCInfo(lcPlayer, "Could not show %s: %s", qUtf8Printable(m_slide.source.toLocalFile()), qUtf8Printable(reason));
    Q_EMIT failed(serial, reason);
}

} // namespace sorvane
