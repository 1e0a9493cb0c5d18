// Interval, zoom and pan, the control overlay, filters and settings of a slideshow window.
#include "slideshow/SlideshowViewModel.h"

#include "slideshow/HostShell.h"

#include <algorithm>

namespace sorvane {

// Auto-advance.

void SlideshowViewModel::scheduleAdvance()
{
    cancelAdvance();
    if (!m_isActive || m_isPaused || !m_settings.autoAdvance || m_isHeldByVideo
        || m_displayMode != DisplayMode::standard || m_images.isEmpty())
        return;
    m_advanceTimer = m_timers.scheduleOnce(m_slideDuration, [this] { onAdvanceDue(); });
}

void SlideshowViewModel::cancelAdvance()
{
    cancelTimer(m_advanceTimer);
}

void SlideshowViewModel::onAdvanceDue()
{
    m_advanceTimer.reset();
    if (m_coordinated) {
        // The manager decides who steps; the next slide schedules the next advance.
        Q_EMIT advanceDue();
        return;
    }
    next(true);
}

// Interval.

void SlideshowViewModel::increaseInterval()
{
    setSlideDuration(std::min(m_slideDuration + intervalStep, maximumSlideDuration));
}

void SlideshowViewModel::decreaseInterval()
{
    const double shorter = m_slideDuration - intervalStep;
    setSlideDuration(shorter <= minimumSlideDuration ? minimumSlideDuration : shorter);
}

void SlideshowViewModel::setSlideDuration(double seconds)
{
    if (seconds == m_slideDuration)
        return;
    m_slideDuration = seconds;
    m_settings.defaultDuration = seconds;
    Q_EMIT slideDurationChanged();
    Q_EMIT settingsChanged();
    persistSettings();
    scheduleAdvance();
}

// Transitions.

void SlideshowViewModel::setSettings(const SlideshowSettings &settings)
{
    if (settings == m_settings)
        return;
    m_settings = settings;
    m_slideDuration = std::clamp(settings.defaultDuration, minimumSlideDuration, maximumSlideDuration);
    Q_EMIT settingsChanged();
    Q_EMIT slideDurationChanged();
    persistSettings();
    scheduleAdvance();
}

void SlideshowViewModel::toggleTransitions()
{
    if (m_settings.transitionStyle != TransitionStyle::none) {
        m_transitionStyleBeforeToggleOff = m_settings.transitionStyle;
        m_settings.transitionStyle = TransitionStyle::none;
    } else {
        m_settings.transitionStyle = m_transitionStyleBeforeToggleOff.value_or(TransitionStyle::crossFade);
        m_transitionStyleBeforeToggleOff.reset();
    }
    Q_EMIT settingsChanged();
    persistSettings();
}

void SlideshowViewModel::setTransitionBudgetFallback(bool fallback)
{
    m_transitionBudgetFallback = fallback;
}

void SlideshowViewModel::persistSettings()
{
    if (m_useTransientSettings)
        return;
    // A failed save is logged where it happens; the show plays on with the values it has.
    m_settings.save(m_preferences);
}

// Zoom and pan.

double SlideshowViewModel::zoomFloor() const
{
    return m_settings.preventZoomOutPast1x ? 1.0 : minimumZoom;
}

void SlideshowViewModel::setZoom(double level, bool setBase)
{
    if (level != m_zoomLevel) {
        m_zoomLevel = level;
        Q_EMIT zoomLevelChanged();
    }
    if (setBase)
        m_baseZoomLevel = level;
    // A slide at or below its fitted size has nothing to pan.
    if (level <= 1.0 && !m_zoomOffset.isNull()) {
        m_zoomOffset = QSizeF(0, 0);
        Q_EMIT zoomOffsetChanged();
    }
}

void SlideshowViewModel::afterZoomCommand()
{
    if (m_host.showControlsAfterCommands())
        revealControls();
    else
        hideControls();
}

void SlideshowViewModel::zoomIn()
{
    setZoom(std::min(m_zoomLevel * zoomStep, maximumZoom), true);
    afterZoomCommand();
}

void SlideshowViewModel::zoomOut()
{
    const double quotient = m_zoomLevel / zoomStep;
    const double floor = zoomFloor();
    setZoom(quotient <= floor ? floor : quotient, true);
    afterZoomCommand();
}

void SlideshowViewModel::resetZoom()
{
    setZoom(1.0, true);
    afterZoomCommand();
}

void SlideshowViewModel::pinchChanged(double scale)
{
    if (!m_settings.enablePinchZoom || !(scale > 0))
        return;
    setZoom(std::clamp(m_baseZoomLevel * scale, zoomFloor(), maximumZoom), false);
}

void SlideshowViewModel::pinchEnded()
{
    m_baseZoomLevel = m_zoomLevel;
}

void SlideshowViewModel::scrollZoom(double delta)
{
    if (!m_settings.enableScrollToZoom)
        return;
    const double factor = 1.0 + delta * m_settings.scrollZoomSensitivity;
    if (!(factor > 0))
        return;
    setZoom(std::clamp(m_zoomLevel * factor, zoomFloor(), maximumZoom), true);
}

void SlideshowViewModel::smartZoom()
{
    if (!m_settings.enableSmartZoom)
        return;
    if (m_zoomLevel != 1.0)
        setZoom(1.0, true);
    else
        setZoom(std::clamp(m_settings.smartZoomLevel, zoomFloor(), maximumZoom), true);
}

void SlideshowViewModel::pan(double dx, double dy)
{
    if (m_zoomLevel <= 1.0)
        return;
    const double sense = m_settings.naturalScrollingForPan ? -1.0 : 1.0;
    m_zoomOffset += QSizeF(sense * dx, sense * dy);
    Q_EMIT zoomOffsetChanged();
}

// Controls.

void SlideshowViewModel::revealControls()
{
    setShowControls(true);
    cancelTimer(m_controlHideTimer);
    m_controlHideTimer = m_timers.scheduleOnce(std::max(0.0, m_settings.controlHideDelay), [this] {
        m_controlHideTimer.reset();
        setShowControls(false);
    });
}

void SlideshowViewModel::hideControls()
{
    cancelTimer(m_controlHideTimer);
    setShowControls(false);
}

void SlideshowViewModel::setShowControls(bool show)
{
    if (m_showControls == show)
        return;
    m_showControls = show;
    Q_EMIT showControlsChanged();
}

// Filters.

void SlideshowViewModel::setImageFilter(ImageFilter filter)
{
    if (m_imageFilter == filter)
        return;
    m_imageFilter = filter;
    Q_EMIT imageFilterChanged();
}

void SlideshowViewModel::cycleImageFilter()
{
    switch (m_imageFilter) {
    case ImageFilter::none:
        setImageFilter(ImageFilter::blackAndWhite);
        return;
    case ImageFilter::blackAndWhite:
        setImageFilter(ImageFilter::sepia);
        return;
    case ImageFilter::sepia:
        setImageFilter(ImageFilter::vintage);
        return;
    case ImageFilter::vintage:
        setImageFilter(ImageFilter::none);
        return;
    }
}

} // namespace sorvane
