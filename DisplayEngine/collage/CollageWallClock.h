#pragma once

#include "collage/CollageLayout.h"
#include "collage/CollageWallSettings.h"

#include <limits>

namespace sorvane {

// Decides, tick by tick, when a running wall changes by itself: it accumulates the time
// that counts (none within the cooldown after an interaction) towards the next image
// change and the next Varied reshuffle. Times are seconds on a steady clock.
class CollageWallClock {
public:
    static constexpr double heartbeat = 0.5; // the host's tick
    static constexpr double interactionCooldown = 2.0;

    // What one tick calls for.
    struct Due {
        int changes = 0; // wall changes to make now
        int slotsPerChange = 0; // Flow slots each of them replaces (1 elsewhere)
        bool reshuffle = false; // switch the Varied template

        bool operator==(const Due &) const = default;
    };

    // A user interaction at `at`; automatic changes wait until the cooldown after the
    // latest one has passed.
    void noteInteraction(double at);
    double lastInteractionAt() const { return m_lastInteractionAt; }

    // Counts `elapsed` seconds ending at `now` for a wall of `layout`. The caller skips
    // the tick altogether while the wall is paused or holds still.
    Due advance(double elapsed, double now, const CollageWallSettings &settings, CollageLayout layout);

    double imageClock() const { return m_imageClock; }
    double layoutClock() const { return m_layoutClock; }

private:
    double m_imageClock = 0.0;
    double m_layoutClock = 0.0;
    int m_staggered = 0; // swaps of the current staggered Flow change already due
    double m_lastInteractionAt = -std::numeric_limits<double>::infinity();
};

} // namespace sorvane
