#include "slideshow/PhasedAdvances.h"

namespace sorvane {

PhasedAdvances::PhasedAdvances(TimerScheduler &timers) : m_timers(timers) { }

PhasedAdvances::~PhasedAdvances()
{
    cancelAll();
}

void PhasedAdvances::schedule(
    const QList<QUuid> &windows, double step, const std::function<void(const QUuid &)> &advance)
{
    for (qsizetype i = 1; i < windows.size(); ++i) {
        const QUuid window = windows[i];
        const quint64 serial = ++m_nextSerial;
        const TimerScheduler::TimerId timer = m_timers.scheduleOnce(double(i) * step, [this, window, serial, advance] {
            m_pending.removeIf([serial](const Pending &pending) { return pending.serial == serial; });
            advance(window);
        });
        m_pending.append({window, timer, serial});
    }
}

void PhasedAdvances::cancel(const QUuid &window)
{
    cancelIf([&window](const Pending &pending) { return pending.window == window; });
}

void PhasedAdvances::cancelAll()
{
    cancelIf([](const Pending &) { return true; });
}

QList<QUuid> PhasedAdvances::pending() const
{
    QList<QUuid> windows;
    for (const Pending &pending : m_pending)
        windows.append(pending.window);
    return windows;
}

void PhasedAdvances::cancelIf(const std::function<bool(const Pending &)> &matches)
{
    m_pending.removeIf([&](const Pending &pending) {
        if (!matches(pending))
            return false;
        m_timers.cancel(pending.timer);
        return true;
    });
}

} // namespace sorvane
