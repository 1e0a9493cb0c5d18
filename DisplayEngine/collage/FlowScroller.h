#pragma once

#include "collage/FlowScrollColumn.h"

#include <vector>

namespace sorvane {

// The strips of a Flow wall with their directions and anchors, turning the wall's
// scroll offset into each strip's position. A strip's position is how far into its
// tile sequence the viewer's leading edge lies:
// (direction × offset − anchor) modulo the strip's cycle length. The view shifts the
// strip's `copies` back by that much, so positions are computed from the clock each
// frame and never accumulate.
class FlowScroller {
public:
    explicit FlowScroller(bool bidirectional = true, bool reversed = false);

    // Replaces the strips. When the strip count is unchanged, each strip whose tile
    // count is unchanged moves its anchor so that the tile at the viewer's edge stays
    // where it is; a different strip count (a reseed) starts every anchor afresh.
    void setColumns(std::vector<FlowScrollColumn> columns, double offset);
    // Changes the directions; anchors move so that no strip jumps.
    void setDirections(bool bidirectional, bool reversed, double offset);

    const std::vector<FlowScrollColumn> &columns() const { return m_columns; }
    // Per strip, the anchor that keeps it continuous across tile and direction changes.
    const std::vector<double> &flowTrackAnchor() const { return m_flowTrackAnchor; }
    int direction(size_t strip) const { return m_directions[strip]; }

    double position(size_t strip, double offset) const;
    // Every strip's position, into `out` (resized to the strip count).
    void positions(double offset, std::vector<double> &out) const;

private:
    bool m_bidirectional;
    bool m_reversed;
    std::vector<FlowScrollColumn> m_columns;
    std::vector<double> m_flowTrackAnchor;
    std::vector<int> m_directions;
    std::vector<std::vector<double>> m_tileLengths;
    std::vector<double> m_cycles;
};

} // namespace sorvane
