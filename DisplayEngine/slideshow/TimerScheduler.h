#pragma once

#include <QtGlobal>

#include <functional>

namespace sorvane {

// Schedules callbacks on the owner's thread after a delay. Playback's advance,
// the controls' tick and the walls' heartbeat are built on it so that tests
// drive them with a fake that fires on demand.
class TimerScheduler {
public:
    using TimerId = quint64;

    virtual ~TimerScheduler() = default;
    // Calls `callback` once after `seconds`; the id cancels it.
    virtual TimerId scheduleOnce(double seconds, std::function<void()> callback) = 0;
    // Calls `callback` every `seconds` until cancelled.
    virtual TimerId scheduleRepeating(double seconds, std::function<void()> callback) = 0;
    // Cancelling an id that already fired or is unknown does nothing.
    virtual void cancel(TimerId id) = 0;
};

} // namespace sorvane
