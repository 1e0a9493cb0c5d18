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
    if (m_timer)
        m_timers.cancel(*m_timer);
    const quint64 generation = ++m_generation;
    m_timer = m_timers.scheduleOnce(m_seconds, [this, generation] {
        // A countdown that outlived its notice must not clear a newer one.
        if (generation != m_generation)
            return;
        m_timer.reset();
        setText({});
    });
    setText(text);
}

void TimedNotice::clear()
{
    if (m_timer)
        m_timers.cancel(*m_timer);
    m_timer.reset();
    setText({});
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
