#include "views/TransitionFrameBudget.h"

namespace sorvane {

TransitionFrameBudget::TransitionFrameBudget(double frameIntervalSeconds, int lateFramesAllowed)
    : m_frameInterval(frameIntervalSeconds), m_lateFramesAllowed(lateFramesAllowed)
{
}

void TransitionFrameBudget::transitionStarted()
{
    m_inTransition = true;
    m_hasMark = false;
    m_lateFrames = 0;
}

void TransitionFrameBudget::transitionEnded()
{
    m_inTransition = false;
    m_hasMark = false;
}

bool TransitionFrameBudget::frameShown(double seconds)
{
    if (!m_inTransition || m_fellBehind)
        return false;
    const bool late = m_hasMark && seconds - m_lastFrame > 2.0 * m_frameInterval;
    m_hasMark = true;
    m_lastFrame = seconds;
    if (late && ++m_lateFrames > m_lateFramesAllowed) {
        m_fellBehind = true;
        return true;
    }
    return false;
}

} // namespace sorvane
