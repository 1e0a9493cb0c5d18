#include "collage/CollageAnimation.h"

namespace sorvane {

CollageAnimation CollageAnimation::mirrored(CollageMutationKind kind)
{
    switch (kind) {
    case CollageMutationKind::advanceSlot:
        // Tiles cross-fade to a new item by themselves.
        return {};
    case CollageMutationKind::reshuffleVariant:
        return easeInOut(0.7);
    case CollageMutationKind::scatterDrop:
        return easeInOut(0.9);
    case CollageMutationKind::reorderDrop:
        return spring(0.45, 0.7);
    }
    // A kind from a newer leader than this follower knows.
    return easeInOut(0.2);
}

} // namespace sorvane
