#include "collage/FlowPointerPause.h"

#include "collage/FlowScrollClock.h"
#include "collage/FlowTuning.h"
#include "slideshow/Clock.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

FlowPointerPause::FlowPointerPause(
    const Clock &clock, TimerScheduler &timers, FlowScrollClock &scroll, double flowScrollPointerPause)
    : m_clock(clock), m_timers(timers), m_scroll(scroll), m_pauseSeconds(usablePause(flowScrollPointerPause))
{
}

FlowPointerPause::~FlowPointerPause()
{
    if (m_pointerResumeTask)
        m_timers.cancel(*m_pointerResumeTask);
}

void FlowPointerPause::setPauseSeconds(double flowScrollPointerPause)
{
    m_pauseSeconds = usablePause(flowScrollPointerPause);
    if (m_pauseSeconds == 0)
        stop();
}

void FlowPointerPause::pointerMoved()
{
    if (m_pauseSeconds == 0)
        return;
    if (m_pointerResumeTask)
        m_timers.cancel(*m_pointerResumeTask);
    m_scroll.hold(FlowScrollHold::pointer, m_clock.monotonicSeconds());
    m_pointerResumeTask = m_timers.scheduleOnce(m_pauseSeconds, [this] { resume(); });
}

void FlowPointerPause::stop()
{
    if (!m_pointerResumeTask)
        return;
    m_timers.cancel(*m_pointerResumeTask);
    resume();
}

double FlowPointerPause::usablePause(double seconds)
{
    if (std::isnan(seconds))
        return FlowTuning::flowDefaultPointerPause;
    return std::clamp(seconds, 0.0, FlowTuning::flowMaxPointerPause);
}

void FlowPointerPause::resume()
{
    m_pointerResumeTask.reset();
    m_scroll.release(FlowScrollHold::pointer, m_clock.monotonicSeconds());
}

} // namespace sorvane
