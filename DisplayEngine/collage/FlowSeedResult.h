#pragma once

#include "collage/FlowSeed.h"
#include "collage/FlowSeedOutcome.h"

#include <optional>

namespace sorvane {

// The outcome of seeding, with the strip count the host shows in its menus either way.
struct FlowSeedResult {
    FlowSeedOutcome outcome = FlowSeedOutcome::emptyContainer;
    int columns = 0;
    // Present exactly when `outcome` is `seeded`.
    std::optional<FlowSeed> seed;

    bool operator==(const FlowSeedResult &) const = default;
};

} // namespace sorvane
