#include "collage/FlowWallDriver.h"

#include "collage/CollageWallState.h"
#include "collage/FlowColumnBuilder.h"
#include "collage/FlowOrientationRouter.h"
#include "slideshow/Clock.h"

namespace sorvane {

FlowWallDriver::FlowWallDriver(const Clock &clock, TimerScheduler &timers)
    : m_clock(clock), m_scroll(clock.monotonicSeconds(), m_settings.flowScrollSpeed),
      m_pointerPause(clock, timers, m_scroll, m_settings.flowScrollPointerPause),
      m_scroller(m_settings.flowScrollBidirectional, false)
{
}

void FlowWallDriver::setSettings(const CollageSlideshowSettings &settings, bool reversed, bool userPaused,
    std::optional<FlowOrientation> orientationOverride)
{
    const double now = m_clock.monotonicSeconds();
    m_settings = settings;
    m_orientationOverride = orientationOverride;
    m_scroll.setSpeed(CollageSlideshowSettings::clampFlowScrollSpeed(settings.flowScrollSpeed), now);
    m_scroll.setHeld(FlowScrollHold::user, userPaused, now);
    // With endless scrolling off the wall stands still.
    m_scroll.setHeld(FlowScrollHold::still, !settings.flowInfiniteScroll, now);
    m_pointerPause.setPauseSeconds(
        CollageSlideshowSettings::clampFlowScrollPointerPause(settings.flowScrollPointerPause));
    m_scroller.setDirections(settings.flowScrollBidirectional, reversed, m_scroll.offset(now));
}

void FlowWallDriver::setWallPaused(bool paused)
{
    m_scroll.setHeld(FlowScrollHold::wall, paused, m_clock.monotonicSeconds());
}

FlowLayoutInput FlowWallDriver::layoutInput(double width, double height) const
{
    FlowLayoutInput input;
    input.width = width;
    input.height = height;
    input.flowColumnAdjustment = CollageSlideshowSettings::clampFlowColumnAdjustment(m_settings.flowColumnAdjustment);
    input.orientation = FlowOrientationRouter::effectiveOrientation(m_orientationOverride, m_settings.flowOrientation);
    input.flowWeightMode = m_settings.flowWeightMode;
    return input;
}

bool FlowWallDriver::update(const CollageWallState &state, double width, double height)
{
    std::vector<FlowScrollColumn> columns = FlowColumnBuilder::build(state.slots, state.flowColumnOf, state.flowAspect,
        state.flowSeededColumns, width, height, state.flowOrientation);
    if (columns == m_scroller.columns())
        return false;
    m_scroller.setColumns(std::move(columns), m_scroll.offset(m_clock.monotonicSeconds()));
    return true;
}

void FlowWallDriver::positions(std::vector<double> &out) const
{
    m_scroller.positions(m_scroll.offset(m_clock.monotonicSeconds()), out);
}

bool FlowWallDriver::autoCycleDue(double seconds)
{
    return m_autoCycle.advance(seconds, m_settings.flowAutoCycleTiles, m_scroll.isRunning());
}

} // namespace sorvane
