#include "collage/FlowScrollColumn.h"

#include "collage/FlowGeometry.h"

namespace sorvane {

namespace {

FlowOrientation orientationOf(const FlowScrollColumn &column)
{
    return column.horizontal ? FlowOrientation::horizontal : FlowOrientation::vertical;
}

} // namespace

std::vector<double> FlowScrollColumn::tileLengths() const
{
    std::vector<double> lengths;
    lengths.reserve(aspects.size());
    for (const double aspect : aspects)
        lengths.push_back(FlowGeometry::tileLength(aspect, columnWidth, orientationOf(*this)));
    return lengths;
}

double FlowScrollColumn::tileStart(size_t tile) const
{
    double start = 0;
    for (size_t k = 0; k < tile && k < aspects.size(); ++k)
        start += FlowGeometry::tileLength(aspects[k], columnWidth, orientationOf(*this)) + spacing;
    return start;
}

double FlowScrollColumn::length() const
{
    return FlowGeometry::stripLength(tileLengths(), columnWidth, spacing);
}

double FlowScrollColumn::cycleLength() const
{
    const double stripLength = length();
    return stripLength > 0 ? stripLength + spacing : 0;
}

} // namespace sorvane
