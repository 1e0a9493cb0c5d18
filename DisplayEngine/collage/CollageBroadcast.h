#pragma once

#include "collage/CollageDrop.h"
#include "collage/CollageMutationKind.h"

#include <QList>
#include <QUuid>

namespace sorvane {

// One change published by a leader. It carries the whole resulting content, not a
// delta, so a follower that missed some broadcasts is level again after the next.
struct CollageBroadcast {
    QList<QUuid> slots;
    QList<CollageDrop> drops;
    int variantIndex = 0;
    CollageMutationKind kind = CollageMutationKind::advanceSlot;
    qint64 seq = 0;

    bool operator==(const CollageBroadcast &) const = default;
};

} // namespace sorvane
