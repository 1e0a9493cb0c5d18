#include "slideshow/QtTimerScheduler.h"

#include <QTimer>

#include <cmath>

namespace sorvane {

QtTimerScheduler::QtTimerScheduler(QObject *parent) : QObject(parent) { }

QtTimerScheduler::~QtTimerScheduler() = default; // the timers are children and go with it

TimerScheduler::TimerId QtTimerScheduler::start(double seconds, bool repeating, std::function<void()> callback)
{
    const TimerId id = m_nextId++;
    auto *timer = new QTimer(this);
    timer->setSingleShot(!repeating);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(int(std::lround(std::max(0.0, seconds) * 1000.0)));
    connect(timer, &QTimer::timeout, this, [this, id, repeating, callback = std::move(callback)] {
        if (!repeating)
            cancel(id); // before the call, which may schedule again
        callback();
    });
    m_timers.emplace(id, timer);
    timer->start();
    return id;
}

TimerScheduler::TimerId QtTimerScheduler::scheduleOnce(double seconds, std::function<void()> callback)
{
    return start(seconds, false, std::move(callback));
}

TimerScheduler::TimerId QtTimerScheduler::scheduleRepeating(double seconds, std::function<void()> callback)
{
    return start(seconds, true, std::move(callback));
}

void QtTimerScheduler::cancel(TimerId id)
{
    const auto found = m_timers.find(id);
    if (found == m_timers.end())
        return;
    found->second->stop();
    found->second->deleteLater();
    m_timers.erase(found);
}

} // namespace sorvane
