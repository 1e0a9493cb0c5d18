#pragma once

#include "collage/FlowTuning.h"

#include <QUuid>

#include <vector>

namespace sorvane {

// One strip of a Flow wall as the view draws it: its tiles in order, its thickness
// and how often its tile sequence repeats. Tile k sits at `tileStart(k)` along the
// strip and is followed by one spacing, so the sequence repeats every `cycleLength()`.
struct FlowScrollColumn {
    int columnIndex = 0;
    // The wall's slot indices in this strip, in order, and the item in each.
    std::vector<int> slotIndices;
    std::vector<QUuid> itemIds;
    // Usable aspect (width / height) of each tile.
    std::vector<double> aspects;
    // The strip's thickness.
    double columnWidth = 0;
    int copies = 1;
    double spacing = FlowTuning::flowSpacing;
    bool horizontal = false;

    std::vector<double> tileLengths() const;
    double tileStart(size_t tile) const;
    double length() const;
    // The length plus one spacing; 0 for a strip with no length.
    double cycleLength() const;

    bool operator==(const FlowScrollColumn &) const = default;
};

} // namespace sorvane
