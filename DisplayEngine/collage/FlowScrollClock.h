#pragma once

#include "collage/FlowScrollHold.h"
#include "collage/FlowTuning.h"

namespace sorvane {

// The Flow wall's scroll offset as a function of time:
// offset(t) = flowScrollBase + speed × (t − flowScrollEpoch) while running. Speed
// changes and holds first fold the offset reached into the base, so the offset is
// continuous whatever happens. Times are monotonic seconds passed in by the caller.
class FlowScrollClock {
public:
    // Starts at offset 0 at `now`.
    explicit FlowScrollClock(double now, double speed = FlowTuning::flowDefaultScrollSpeed);

    // Points scrolled by `now`. Never less than the base, even for a time before the epoch.
    double offset(double now) const;

    // Speeds are held within 6 ... 72 points per second; not a number reads as 18.
    void setSpeed(double speed, double now);
    void hold(FlowScrollHold reason, double now);
    void release(FlowScrollHold reason, double now);
    void setHeld(FlowScrollHold reason, bool held, double now);

    bool isRunning() const { return m_holds == 0; }
    bool isHeld(FlowScrollHold reason) const { return (m_holds & unsigned(reason)) != 0; }

    double flowScrollBase() const { return m_flowScrollBase; }
    double flowScrollEpoch() const { return m_flowScrollEpoch; }
    double flowScrollLastSpeed() const { return m_flowScrollLastSpeed; }

    static double usableSpeed(double speed);

private:
    void foldInto(double now);

    double m_flowScrollBase = 0;
    double m_flowScrollEpoch;
    double m_flowScrollLastSpeed;
    unsigned m_holds = 0;
};

} // namespace sorvane
