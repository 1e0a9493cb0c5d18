#pragma once

#include "slideshow/Clock.h"
#include "slideshow/TimerScheduler.h"

#include <map>

namespace sorvane::test {

// A clock and timers that move only when a test says so: advance() fires, in
// time order, every timer that falls due, exactly as a run loop would.
class FakeTime final : public Clock, public TimerScheduler {
public:
    double monotonicSeconds() const override { return m_now; }
    QDateTime nowUtc() const override { return m_epoch.addMSecs(qint64(m_now * 1000.0)); }

    TimerId scheduleOnce(double seconds, std::function<void()> callback) override;
    TimerId scheduleRepeating(double seconds, std::function<void()> callback) override;
    void cancel(TimerId id) override { m_timers.erase(id); }

    void advance(double seconds);
    size_t pendingTimers() const { return m_timers.size(); }

private:
    struct Timer {
        double due;
        double period; // 0: once
        std::function<void()> callback;
    };

    double m_now = 0;
    QDateTime m_epoch = QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC);
    TimerId m_nextId = 1;
    std::map<TimerId, Timer> m_timers;
};

} // namespace sorvane::test
