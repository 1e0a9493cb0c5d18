#pragma once

#include "collage/CollageSlideshowSettings.h"
#include "collage/FlowAutoCycle.h"
#include "collage/FlowLayoutInput.h"
#include "collage/FlowPointerPause.h"
#include "collage/FlowScrollClock.h"
#include "collage/FlowScroller.h"
#include "collage/FlowSeed.h"
#include "slideshow/TimerScheduler.h"

#include <optional>
#include <vector>

namespace sorvane {

class Clock;
struct CollageWallState;

// The moving part of a Flow wall: which strips there are for the wall's size, where each
// strip stands at this instant, and what holds the scroll still. Positions come from the
// clock on every call, never from counting frames, so a dropped frame cannot drift the wall.
class FlowWallDriver {
public:
    FlowWallDriver(const Clock &clock, TimerScheduler &timers);
    FlowWallDriver(const FlowWallDriver &) = delete;
    FlowWallDriver &operator=(const FlowWallDriver &) = delete;

    // The flow values of the settings, the per-run reverse and pause flags, and an
    // orientation a host may force. Speed changes never make the wall jump.
    void setSettings(const CollageSlideshowSettings &settings, bool reversed, bool userPaused,
        std::optional<FlowOrientation> orientationOverride);
    // The host paused the whole wall.
    void setWallPaused(bool paused);
    // What the slots must be seeded for at this size with the current settings.
    FlowLayoutInput layoutInput(double width, double height) const;

    // Builds the strips from the wall's slots; strips whose tiles changed keep the tile under
    // the viewer where it is. Returns whether the strips differ from before.
    bool update(const CollageWallState &state, double width, double height);
    const std::vector<FlowScrollColumn> &columns() const { return m_scroller.columns(); }
    // Each strip's scroll position now, in points along the strip, within its cycle.
    void positions(std::vector<double> &out) const;

    void pointerMoved() { m_pointerPause.pointerMoved(); }
    // Time passed on the wall's heartbeat; true when auto-cycling wants one more tile changed.
    bool autoCycleDue(double seconds);
    bool isScrolling() const { return m_scroll.isRunning(); }
    const FlowScrollClock &scrollClock() const { return m_scroll; }

private:
    const Clock &m_clock;
    CollageSlideshowSettings m_settings;
    std::optional<FlowOrientation> m_orientationOverride;
    FlowScrollClock m_scroll;
    FlowPointerPause m_pointerPause;
    FlowScroller m_scroller;
    FlowAutoCycle m_autoCycle;
};

} // namespace sorvane
