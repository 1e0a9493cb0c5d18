#include "collage/FlowGeometry.h"

#include "collage/FlowTuning.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sorvane {

int FlowGeometry::effectiveFlowColumnCount(double width, qint64 adjustment, double targetWidth)
{
    if (!(width > 0))
        return FlowTuning::flowMinColumns;
    const qint64 limit = FlowTuning::flowMaxColumnAdjustment;
    // In doubles, so an absurd width saturates instead of overflowing an int.
    const double count = std::round(width / targetWidth) + double(std::clamp(adjustment, -limit, limit));
    if (std::isnan(count))
        return FlowTuning::flowMinColumns;
    return int(std::clamp(count, double(FlowTuning::flowMinColumns), double(FlowTuning::flowMaxColumns)));
}

int FlowGeometry::effectiveFlowColumnCount(double width, double height, qint64 adjustment, FlowOrientation orientation)
{
    const double target = orientation == FlowOrientation::horizontal ? FlowTuning::flowTargetRowHeight
                                                                     : FlowTuning::flowTargetColumnWidth;
    return effectiveFlowColumnCount(crossExtent(width, height, orientation), adjustment, target);
}

double FlowGeometry::crossExtent(double width, double height, FlowOrientation orientation)
{
    return orientation == FlowOrientation::horizontal ? height : width;
}

double FlowGeometry::mainExtent(double width, double height, FlowOrientation orientation)
{
    return orientation == FlowOrientation::horizontal ? width : height;
}

double FlowGeometry::stripThickness(double crossExtent, int count)
{
    if (count <= 0)
        return 0;
    const double thickness = (crossExtent - FlowTuning::flowSpacing * (count + 1)) / count;
    return thickness > 0 ? thickness : 0;
}

std::optional<int> FlowGeometry::tilesPerStrip(double mainExtent, double thickness, FlowOrientation orientation)
{
    const double factor = orientation == FlowOrientation::vertical ? FlowTuning::flowFillHeightFactor : 1.0;
    const double estimate = std::max(thickness * factor, 1.0);
    const double tiles = std::ceil(std::max(mainExtent, 0.0) / estimate) + FlowTuning::flowExtraTiles;
    if (!(tiles <= double(std::numeric_limits<int>::max())))
        return std::nullopt;
    return int(tiles);
}

double FlowGeometry::tileAspect(double aspect)
{
    if (!std::isfinite(aspect))
        return FlowTuning::flowDefaultAspect;
    return std::max(aspect, FlowTuning::flowMinAspect);
}

double FlowGeometry::tileLength(double aspect, double thickness, FlowOrientation orientation)
{
    const double a = tileAspect(aspect);
    return orientation == FlowOrientation::horizontal ? thickness * a : thickness / a;
}

double FlowGeometry::stripLength(std::span<const double> tileLengths, double thickness, double spacing)
{
    if (tileLengths.empty() || !(thickness > 0))
        return 0;
    double length = spacing * double(tileLengths.size() - 1);
    for (const double tile : tileLengths)
        length += tile;
    return length;
}

int FlowGeometry::copies(double cycleLength, double mainExtent)
{
    if (!(cycleLength > 0) || !(mainExtent > 0))
        return 1;
    // One cycle for the phase, plus as many as the screen needs beyond it.
    const double copies = 1 + std::ceil(mainExtent / cycleLength);
    return copies < double(std::numeric_limits<int>::max()) ? int(copies) : std::numeric_limits<int>::max();
}

int FlowGeometry::scrollDirection(int columnIndex, bool bidirectional, bool reversed)
{
    const int direction = bidirectional && columnIndex % 2 != 0 ? -1 : 1;
    return reversed ? -direction : direction;
}

double FlowGeometry::trackAnchor(std::span<const double> oldLengths, std::span<const double> newLengths, double travel,
    double anchor, double spacing)
{
    const size_t n = oldLengths.size();
    if (n == 0 || n != newLengths.size())
        return anchor;
    double oldCycle = spacing * double(n);
    for (const double length : oldLengths)
        oldCycle += length;
    const double phase = wrap(travel - anchor, oldCycle);

    // The tile at the viewer's edge, and how far into it the edge lies.
    size_t k = 0;
    double start = 0;
    while (k + 1 < n && start + spacing + oldLengths[k] <= phase) {
        start += spacing + oldLengths[k];
        ++k;
    }
    const double intoTile = phase - start;

    double newStart = 0;
    for (size_t j = 0; j < k; ++j)
        newStart += spacing + newLengths[j];
    return travel - (intoTile + newStart);
}

double FlowGeometry::wrap(double value, double cycle)
{
    if (!(cycle > 0))
        return 0;
    double r = std::fmod(value, cycle);
    if (r < 0)
        r += cycle;
    // A tiny negative remainder plus the cycle can round up to the cycle itself.
    return r < cycle ? r : 0;
}

} // namespace sorvane
