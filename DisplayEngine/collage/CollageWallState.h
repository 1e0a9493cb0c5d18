#pragma once

#include "collage/CollageDrop.h"
#include "collage/CollageLayout.h"
#include "collage/FlowOrientation.h"

#include <QHash>
#include <QList>
#include <QUuid>

namespace sorvane {

// Everything a wall shows, as one value: captured when the user leaves the wall,
// restored on return and copied onto mirrored walls.
struct CollageWallState {
    CollageLayout layout = CollageLayout::flow;
    QList<QUuid> slots; // the item in each slot (Varied and Flow)
    QList<int> flowColumnOf; // strip of each slot
    QHash<QUuid, double> flowAspect; // measured width / height per item
    double flowSeededWidth = 0.0;
    double flowSeededHeight = 0.0;
    int flowSeededColumns = 0;
    FlowOrientation flowOrientation = FlowOrientation::vertical;
    QList<CollageDrop> drops; // the Scatter pile, bottom first
    int variantIndex = 0; // which Varied template is in use
    qint64 poolGeneration = 0; // a state of another generation is never restored

    bool operator==(const CollageWallState &) const = default;
};

} // namespace sorvane
