#include "collage/FlowAutoCycle.h"

#include "collage/FlowTuning.h"

namespace sorvane {

bool FlowAutoCycle::advance(double seconds, bool flowAutoCycleTiles, bool scrolling)
{
    if (!flowAutoCycleTiles) {
        m_flowRecycleClock = 0;
        return false;
    }
    if (!scrolling || !(seconds > 0))
        return false;
    m_flowRecycleClock += seconds;
    if (m_flowRecycleClock < FlowTuning::flowRecycleInterval)
        return false;
    m_flowRecycleClock = 0;
    return true;
}

} // namespace sorvane
