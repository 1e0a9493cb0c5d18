#include "collage/FlowScroller.h"

#include "collage/FlowGeometry.h"

namespace sorvane {

FlowScroller::FlowScroller(bool bidirectional, bool reversed) : m_bidirectional(bidirectional), m_reversed(reversed) { }

void FlowScroller::setColumns(std::vector<FlowScrollColumn> columns, double offset)
{
    const bool sameStrips = columns.size() == m_columns.size();
    std::vector<double> anchors(columns.size(), 0.0);
    std::vector<int> directions(columns.size());
    std::vector<std::vector<double>> tileLengths(columns.size());
    std::vector<double> cycles(columns.size());
    for (size_t i = 0; i < columns.size(); ++i) {
        const FlowScrollColumn &column = columns[i];
        directions[i] = FlowGeometry::scrollDirection(column.columnIndex, m_bidirectional, m_reversed);
        tileLengths[i] = column.tileLengths();
        const double length = FlowGeometry::stripLength(tileLengths[i], column.columnWidth, column.spacing);
        cycles[i] = length > 0 ? length + column.spacing : 0;
        if (sameStrips) {
            anchors[i] = FlowGeometry::trackAnchor(
                m_tileLengths[i], tileLengths[i], m_directions[i] * offset, m_flowTrackAnchor[i], column.spacing);
            // A strip whose direction changed with the rebuild must not jump either.
            anchors[i] += (directions[i] - m_directions[i]) * offset;
        }
    }
    m_columns = std::move(columns);
    m_flowTrackAnchor = std::move(anchors);
    m_directions = std::move(directions);
    m_tileLengths = std::move(tileLengths);
    m_cycles = std::move(cycles);
}

void FlowScroller::setDirections(bool bidirectional, bool reversed, double offset)
{
    m_bidirectional = bidirectional;
    m_reversed = reversed;
    for (size_t i = 0; i < m_columns.size(); ++i) {
        const int direction = FlowGeometry::scrollDirection(m_columns[i].columnIndex, bidirectional, reversed);
        // direction × offset − anchor must not change at this offset.
        m_flowTrackAnchor[i] += (direction - m_directions[i]) * offset;
        m_directions[i] = direction;
    }
}

double FlowScroller::position(size_t strip, double offset) const
{
    return FlowGeometry::wrap(m_directions[strip] * offset - m_flowTrackAnchor[strip], m_cycles[strip]);
}

void FlowScroller::positions(double offset, std::vector<double> &out) const
{
    out.resize(m_columns.size());
    for (size_t i = 0; i < m_columns.size(); ++i)
        out[i] = position(i, offset);
}

} // namespace sorvane
