#pragma once

#include "collage/FlowOrientation.h"

#include <QList>

namespace sorvane {

// The slots of a freshly seeded Flow wall and what they were seeded for. The field
// names are those of the wall state, which keeps them to tell when to reseed.
struct FlowSeed {
    // The strip of each slot; its size is the wall's slot count.
    QList<int> flowColumnOf;
    double flowSeededWidth = 0;
    double flowSeededHeight = 0;
    int flowSeededColumns = 0;
    FlowOrientation flowOrientation = FlowOrientation::vertical;
    int tilesPerStrip = 0;

    bool operator==(const FlowSeed &) const = default;
};

} // namespace sorvane
