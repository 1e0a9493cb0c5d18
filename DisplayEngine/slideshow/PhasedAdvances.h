#pragma once

#include "slideshow/TimerScheduler.h"

#include <QList>
#include <QUuid>

#include <functional>

namespace sorvane {

// The delayed advances of a phased step, one cancellable timer per waiting window, so
// that a new step, a stop or a window closing cancels what is still pending.
class PhasedAdvances {
public:
    // `timers` must outlive this object.
    explicit PhasedAdvances(TimerScheduler &timers);
    ~PhasedAdvances();
    PhasedAdvances(const PhasedAdvances &) = delete;
    PhasedAdvances &operator=(const PhasedAdvances &) = delete;

    // Window `windows[i]` gets `advance` called with its id after i × `step` seconds;
    // the first is left to the caller, which steps it at once.
    void schedule(const QList<QUuid> &windows, double step, const std::function<void(const QUuid &)> &advance);
    void cancel(const QUuid &window);
    void cancelAll();
    // The windows still waiting, in turn order.
    QList<QUuid> pending() const;

private:
    struct Pending {
        QUuid window;
        TimerScheduler::TimerId timer;
        quint64 serial;
    };

    void cancelIf(const std::function<bool(const Pending &)> &matches);

    TimerScheduler &m_timers;
    QList<Pending> m_pending;
    quint64 m_nextSerial = 0;
};

} // namespace sorvane
