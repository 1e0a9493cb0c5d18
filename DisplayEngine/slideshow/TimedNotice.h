#pragma once

#include "slideshow/TimerScheduler.h"

#include <QString>

#include <functional>
#include <optional>

namespace sorvane {

// A short text shown for a while, then cleared by itself through the injected timers.
// Each new text restarts the countdown, so only the newest notice clears.
class TimedNotice {
public:
    // `changed` is called whenever the text changes; `timers` must outlive the notice.
    TimedNotice(TimerScheduler &timers, double seconds, std::function<void()> changed);
    ~TimedNotice();
    TimedNotice(const TimedNotice &) = delete;
    TimedNotice &operator=(const TimedNotice &) = delete;

    const QString &text() const { return m_text; }
    // Numbers the notices shown so far.
    quint64 generation() const { return m_generation; }

    void show(const QString &text);

private:
    void setText(const QString &text);

    TimerScheduler &m_timers;
    double m_seconds;
    std::function<void()> m_changed;
    QString m_text;
    quint64 m_generation = 0;
    std::optional<TimerScheduler::TimerId> m_timer;
};

} // namespace sorvane
