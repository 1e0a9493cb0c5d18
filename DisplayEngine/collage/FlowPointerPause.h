#pragma once

#include "collage/FlowTuning.h"
#include "slideshow/TimerScheduler.h"

#include <optional>

namespace sorvane {

class Clock;
class FlowScrollClock;

// Holds a Flow wall's scrolling while the pointer moves over it, and lets it run
// again once the pointer has been still for `flowScrollPointerPause` seconds.
class FlowPointerPause {
public:
    FlowPointerPause(const Clock &clock, TimerScheduler &timers, FlowScrollClock &scroll,
        double flowScrollPointerPause = FlowTuning::flowDefaultPointerPause);
    ~FlowPointerPause();
    FlowPointerPause(const FlowPointerPause &) = delete;
    FlowPointerPause &operator=(const FlowPointerPause &) = delete;

    // Held within 0 ... 5 seconds; not a number reads as 0.5. With 0 the pointer never
    // pauses scrolling, and a pause under way ends at once.
    void setPauseSeconds(double flowScrollPointerPause);
    double pauseSeconds() const { return m_pauseSeconds; }

    // Each movement restarts the wait.
    void pointerMoved();
    // Ends a pause under way at once (the wall is going away or the pointer left it).
    void stop();

    bool isPausing() const { return m_pointerResumeTask.has_value(); }

    static double usablePause(double seconds);

private:
    void resume();

    const Clock &m_clock;
    TimerScheduler &m_timers;
    FlowScrollClock &m_scroll;
    double m_pauseSeconds;
    std::optional<TimerScheduler::TimerId> m_pointerResumeTask;
};

} // namespace sorvane
