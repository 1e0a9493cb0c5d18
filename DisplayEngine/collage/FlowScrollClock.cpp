#include "collage/FlowScrollClock.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

FlowScrollClock::FlowScrollClock(double now, double speed)
    : m_flowScrollEpoch(now), m_flowScrollLastSpeed(usableSpeed(speed))
{
}

double FlowScrollClock::offset(double now) const
{
    if (!isRunning())
        return m_flowScrollBase;
    return m_flowScrollBase + m_flowScrollLastSpeed * std::max(0.0, now - m_flowScrollEpoch);
}

void FlowScrollClock::setSpeed(double speed, double now)
{
    const double usable = usableSpeed(speed);
    if (usable == m_flowScrollLastSpeed)
        return;
    foldInto(now);
    m_flowScrollLastSpeed = usable;
}

void FlowScrollClock::hold(FlowScrollHold reason, double now)
{
    foldInto(now);
    m_holds |= unsigned(reason);
}

void FlowScrollClock::release(FlowScrollHold reason, double now)
{
    if (!isHeld(reason))
        return;
    m_holds &= ~unsigned(reason);
    // The base was frozen when the hold began; running resumes from it now.
    if (isRunning())
        m_flowScrollEpoch = now;
}

void FlowScrollClock::setHeld(FlowScrollHold reason, bool held, double now)
{
    if (held)
        hold(reason, now);
    else
        release(reason, now);
}

double FlowScrollClock::usableSpeed(double speed)
{
    if (std::isnan(speed))
        return FlowTuning::flowDefaultScrollSpeed;
    return std::clamp(speed, FlowTuning::flowMinScrollSpeed, FlowTuning::flowMaxScrollSpeed);
}

void FlowScrollClock::foldInto(double now)
{
    m_flowScrollBase = offset(now);
    if (isRunning())
        m_flowScrollEpoch = std::max(m_flowScrollEpoch, now);
}

} // namespace sorvane
