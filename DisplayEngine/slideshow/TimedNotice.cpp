#include "slideshow/TimedNotice.h"

namespace sorvane {

TimedNotice::TimedNotice(TimerScheduler &timers, double seconds, std::function<void()> changed)
    : m_timers(timers), m_seconds(seconds), m_changed(std::move(changed))
{
}

TimedNotice::~TimedNotice()
{
    if (m_timer)
        m_timers.cancel(*m_timer);
}

void TimedNotice::show(const QString &text)
{
    // A new notice takes over the countdown: the one it replaces never clears it.
    if (m_timer)
        m_timers.cancel(*m_timer);
    ++m_generation;
    m_timer = m_timers.scheduleOnce(m_seconds, [this] {
        m_timer.reset();
        setText({});
    });
    setText(text);
}

void TimedNotice::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    if (m_changed)
        m_changed();
}

} // namespace sorvane
