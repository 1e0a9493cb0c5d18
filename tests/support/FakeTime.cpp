#include "support/FakeTime.h"

namespace sorvane::test {

TimerScheduler::TimerId FakeTime::scheduleOnce(double seconds, std::function<void()> callback)
{
    const TimerId id = m_nextId++;
    m_timers.emplace(id, Timer {m_now + std::max(0.0, seconds), 0.0, std::move(callback)});
    return id;
}

TimerScheduler::TimerId FakeTime::scheduleRepeating(double seconds, std::function<void()> callback)
{
    const TimerId id = m_nextId++;
    m_timers.emplace(id, Timer {m_now + std::max(0.001, seconds), std::max(0.001, seconds), std::move(callback)});
    return id;
}

void FakeTime::advance(double seconds)
{
    const double until = m_now + seconds;
    for (;;) {
        // The earliest due timer (ties in scheduling order), as a run loop would fire them.
        auto next = m_timers.end();
        for (auto it = m_timers.begin(); it != m_timers.end(); ++it) {
            if (it->second.due <= until && (next == m_timers.end() || it->second.due < next->second.due))
                next = it;
        }
        if (next == m_timers.end())
            break;
        m_now = std::max(m_now, next->second.due);
        std::function<void()> callback = next->second.callback;
        if (next->second.period > 0)
            next->second.due += next->second.period;
        else
            m_timers.erase(next);
        callback();
    }
    m_now = until;
}

} // namespace sorvane::test
