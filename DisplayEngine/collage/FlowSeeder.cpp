#include "collage/FlowSeeder.h"

#include "collage/FlowGeometry.h"
#include "collage/FlowTuning.h"

#include <cmath>
#include <vector>

namespace sorvane {

namespace {

bool usableSize(double width, double height)
{
    return std::isfinite(width) && std::isfinite(height) && width > 0 && height > 0;
}

QList<int> dealInTurn(int columns, int slotCount)
{
    QList<int> columnOf(slotCount);
    for (int slot = 0; slot < slotCount; ++slot)
        columnOf[slot] = slot % columns;
    return columnOf;
}

QList<int> dealToShortest(int columns, int tilesPerStrip, double thickness, FlowOrientation orientation,
    const FlowSeeder::AspectOfSlot &aspectOfSlot)
{
    const int slotCount = columns * tilesPerStrip;
    QList<int> columnOf(slotCount);
    // Each tile adds its length and one spacing; the common spacing does not change the order.
    std::vector<double> length(size_t(columns), 0.0);
    std::vector<int> filled(size_t(columns), 0);
    for (int slot = 0; slot < slotCount; ++slot) {
        const double aspect = aspectOfSlot ? aspectOfSlot(slot) : FlowTuning::flowDefaultAspect;
        int shortest = -1;
        for (int column = 0; column < columns; ++column) {
            if (filled[size_t(column)] < tilesPerStrip
                && (shortest < 0 || length[size_t(column)] < length[size_t(shortest)]))
                shortest = column;
        }
        columnOf[slot] = shortest;
        length[size_t(shortest)] += FlowGeometry::tileLength(aspect, thickness, orientation) + FlowTuning::flowSpacing;
        ++filled[size_t(shortest)];
    }
    return columnOf;
}

} // namespace

FlowSeedResult FlowSeeder::seed(const FlowLayoutInput &input, qsizetype poolSize, const AspectOfSlot &aspectOfSlot)
{
    FlowSeedResult result;
    result.columns = FlowGeometry::effectiveFlowColumnCount(
        input.width, input.height, input.flowColumnAdjustment, input.orientation);
    if (!usableSize(input.width, input.height)) {
        result.outcome = FlowSeedOutcome::emptyContainer;
        return result;
    }
    if (poolSize <= 0) {
        result.outcome = FlowSeedOutcome::emptyPool;
        return result;
    }

    const double thickness = FlowGeometry::stripThickness(
        FlowGeometry::crossExtent(input.width, input.height, input.orientation), result.columns);
    const std::optional<int> tiles = FlowGeometry::tilesPerStrip(
        FlowGeometry::mainExtent(input.width, input.height, input.orientation), thickness, input.orientation);
    int slotCount = 0;
    if (!tiles || __builtin_mul_overflow(result.columns, *tiles, &slotCount)) {
        result.outcome = FlowSeedOutcome::tooManySlots;
        return result;
    }

    FlowSeed seed;
    seed.flowColumnOf = input.flowWeightMode == FlowWeightMode::weighted
        ? dealToShortest(result.columns, *tiles, thickness, input.orientation, aspectOfSlot)
        : dealInTurn(result.columns, slotCount);
    seed.flowSeededWidth = input.width;
    seed.flowSeededHeight = input.height;
    seed.flowSeededColumns = result.columns;
    seed.flowOrientation = input.orientation;
    seed.tilesPerStrip = *tiles;
    result.outcome = FlowSeedOutcome::seeded;
    result.seed = std::move(seed);
    return result;
}

bool FlowSeeder::needsReseed(double flowSeededWidth, double flowSeededHeight, int flowSeededColumns,
    FlowOrientation flowOrientation, const FlowLayoutInput &input)
{
    const int columns = FlowGeometry::effectiveFlowColumnCount(
        input.width, input.height, input.flowColumnAdjustment, input.orientation);
    return flowSeededWidth != input.width || flowSeededHeight != input.height || flowSeededColumns != columns
        || flowOrientation != input.orientation;
}

} // namespace sorvane
