#pragma once

namespace sorvane {

// Whether seeding a Flow wall's slots happened, and if not, why.
enum class FlowSeedOutcome {
    seeded,
    // Nothing to show yet; seeding waits for items.
    emptyPool,
    // The container has no usable size.
    emptyContainer,
    // The slot count does not fit an int.
    tooManySlots,
};

} // namespace sorvane
