#include "collage/FlowColumnBuilder.h"

#include "collage/FlowGeometry.h"
#include "collage/FlowTuning.h"

#include <algorithm>

namespace sorvane {

std::vector<FlowScrollColumn> FlowColumnBuilder::build(const QList<QUuid> &slots, const QList<int> &flowColumnOf,
    const QHash<QUuid, double> &flowAspect, int columns, double width, double height, FlowOrientation orientation)
{
    if (columns <= 0)
        return {};
    const double thickness
        = FlowGeometry::stripThickness(FlowGeometry::crossExtent(width, height, orientation), columns);
    std::vector<FlowScrollColumn> strips(static_cast<size_t>(columns));
    for (int column = 0; column < columns; ++column) {
        FlowScrollColumn &strip = strips[size_t(column)];
        strip.columnIndex = column;
        strip.columnWidth = thickness;
        strip.horizontal = orientation == FlowOrientation::horizontal;
    }

    const qsizetype slotCount = std::min(slots.size(), flowColumnOf.size());
    // Sized up front: walls are rebuilt on every tile change, mid-animation.
    std::vector<size_t> tiles(strips.size(), 0);
    for (qsizetype slot = 0; slot < slotCount; ++slot) {
        const int column = flowColumnOf[slot];
        if (column >= 0 && column < columns)
            ++tiles[size_t(column)];
    }
    for (size_t column = 0; column < strips.size(); ++column) {
        strips[column].slotIndices.reserve(tiles[column]);
        strips[column].itemIds.reserve(tiles[column]);
        strips[column].aspects.reserve(tiles[column]);
    }

    for (qsizetype slot = 0; slot < slotCount; ++slot) {
        const int column = flowColumnOf[slot];
        if (column < 0 || column >= columns)
            continue;
        FlowScrollColumn &strip = strips[size_t(column)];
        strip.slotIndices.push_back(int(slot));
        strip.itemIds.push_back(slots[slot]);
        strip.aspects.push_back(FlowGeometry::tileAspect(flowAspect.value(slots[slot], FlowTuning::flowDefaultAspect)));
    }

    const double mainExtent = FlowGeometry::mainExtent(width, height, orientation);
    for (FlowScrollColumn &strip : strips)
        strip.copies = FlowGeometry::copies(strip.cycleLength(), mainExtent);
    return strips;
}

} // namespace sorvane
