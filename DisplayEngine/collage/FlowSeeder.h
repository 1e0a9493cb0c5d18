#pragma once

#include "collage/FlowLayoutInput.h"
#include "collage/FlowSeedResult.h"

#include <QtGlobal>

#include <functional>

namespace sorvane {

// Decides how many slots a Flow wall has and which strip each belongs to.
class FlowSeeder {
public:
    // The aspect of the item that will sit in a slot. Called once per slot, in slot
    // order, so a caller may deal the items as it is asked.
    using AspectOfSlot = std::function<double(int slot)>;

    // Seeds the wall for `input`. Proportional mode deals slots to the strips in turn;
    // weighted mode gives each slot to the currently shortest strip that still has
    // room, asking `aspectOfSlot` (empty: every item is taken as square). Either way
    // every strip gets the same number of slots.
    static FlowSeedResult seed(const FlowLayoutInput &input, qsizetype poolSize, const AspectOfSlot &aspectOfSlot = {});

    // True when the container, the strip count or the orientation differs from what
    // the slots were seeded for.
    static bool needsReseed(double flowSeededWidth, double flowSeededHeight, int flowSeededColumns,
        FlowOrientation flowOrientation, const FlowLayoutInput &input);
};

} // namespace sorvane
