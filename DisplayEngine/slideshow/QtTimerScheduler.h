#pragma once

#include "slideshow/TimerScheduler.h"

#include <QObject>

#include <unordered_map>

class QTimer;

namespace sorvane {

// Timers on the Qt event loop of the thread that owns this object.
class QtTimerScheduler final : public QObject, public TimerScheduler {
    Q_OBJECT
public:
    explicit QtTimerScheduler(QObject *parent = nullptr);
    ~QtTimerScheduler() override;

    TimerId scheduleOnce(double seconds, std::function<void()> callback) override;
    TimerId scheduleRepeating(double seconds, std::function<void()> callback) override;
    void cancel(TimerId id) override;

private:
    TimerId start(double seconds, bool repeating, std::function<void()> callback);

    TimerId m_nextId = 1;
    std::unordered_map<TimerId, QTimer *> m_timers;
};

} // namespace sorvane
