#pragma once

namespace sorvane {

// What a leader's broadcast changed; followers animate the update by it.
enum class CollageMutationKind {
    advanceSlot, // a slot got a new item
    reshuffleVariant, // the Varied template changed
    scatterDrop, // a photo was dropped onto the Scatter table
    reorderDrop, // a Scatter photo was brought to the top
};

} // namespace sorvane
