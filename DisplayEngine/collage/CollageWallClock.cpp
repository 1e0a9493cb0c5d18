#include "collage/CollageWallClock.h"

#include <algorithm>

namespace sorvane {

void CollageWallClock::noteInteraction(double at)
{
    m_lastInteractionAt = std::max(m_lastInteractionAt, at);
}

CollageWallClock::Due CollageWallClock::advance(
    double elapsed, double now, const CollageWallSettings &settings, CollageLayout layout)
{
    if (now - m_lastInteractionAt < interactionCooldown)
        return {};

    const bool flow = layout == CollageLayout::flow;
    // Varied is the one layout that is neither of the others.
    const bool varied = !flow && layout != CollageLayout::scatter;
    const bool shuffling = varied && settings.shuffleVariedLayout;

    m_imageClock += elapsed;
    if (shuffling)
        m_layoutClock += elapsed;

    Due due;
    const double interval = settings.imageChangeInterval;
    const int perChange = flow ? std::max(settings.flowTilesPerChange, 1) : 1;
    if (flow && settings.flowStaggerSwaps && perChange > 1) {
        // The k-th swap of a change falls due at k / perChange of the interval, the last
        // one exactly when an unstaggered change would.
        while (m_staggered < perChange && m_imageClock >= interval * (m_staggered + 1) / perChange) {
            ++m_staggered;
            ++due.changes;
        }
        due.slotsPerChange = due.changes > 0 ? 1 : 0;
        if (m_staggered == perChange) {
            m_staggered = 0;
            m_imageClock = 0.0;
        }
    } else if (m_imageClock >= interval) {
        due.changes = 1;
        due.slotsPerChange = perChange;
        m_imageClock = 0.0;
    }

    if (shuffling && m_layoutClock >= settings.variedLayoutInterval) {
        due.reshuffle = true;
        m_layoutClock = 0.0;
    }
    return due;
}

} // namespace sorvane
