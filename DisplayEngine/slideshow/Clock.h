#pragma once

#include <QDateTime>

namespace sorvane {

// Where time comes from. Playback, controls and walls ask a clock instead of the
// system, so tests can move time by hand instead of sleeping.
class Clock {
public:
    virtual ~Clock() = default;
    // Seconds on a steady clock that never goes backwards (for intervals).
    virtual double monotonicSeconds() const = 0;
    // The wall-clock time (for records that are saved).
    virtual QDateTime nowUtc() const = 0;
};

} // namespace sorvane
