#pragma once

namespace sorvane {

// The collage settings that pace a wall's own changes, copied from the user's
// collage settings by the host.
struct CollageWallSettings {
    double imageChangeInterval = 4.0; // seconds between two changes of the wall
    bool shuffleVariedLayout = true;
    double variedLayoutInterval = 60.0; // seconds between two Varied template switches
    int flowTilesPerChange = 2; // Flow slots replaced per change; below 1 counts as 1
    bool flowStaggerSwaps = true; // spread those replacements over the interval

    bool operator==(const CollageWallSettings &) const = default;
};

} // namespace sorvane
