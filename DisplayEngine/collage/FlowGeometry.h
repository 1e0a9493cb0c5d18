#pragma once

#include "collage/FlowOrientation.h"

#include <QtGlobal>

#include <optional>
#include <span>

namespace sorvane {

// Pure measurements of the Flow wall: how many strips, how thick, how many tiles,
// how long, which way they run, and where a strip's anchor must move so that a
// change of tile lengths does not make it jump.
class FlowGeometry {
public:
    // Strip count for a cross-axis `width` (container width when vertical, height when
    // horizontal): round(width / targetWidth) + adjustment, halves away from zero,
    // within 2 ... 8. The adjustment is held within ±6 first. A width that is not positive gives 2.
    static int effectiveFlowColumnCount(double width, qint64 adjustment, double targetWidth);
    // The same for a container, with the extent and target the orientation calls for.
    static int effectiveFlowColumnCount(double width, double height, qint64 adjustment, FlowOrientation orientation);

    // Extent across the strips and along them.
    static double crossExtent(double width, double height, FlowOrientation orientation);
    static double mainExtent(double width, double height, FlowOrientation orientation);

    // Thickness of each of `count` strips with spacing between them and at both edges; never negative.
    static double stripThickness(double crossExtent, int count);

    // Tiles seeded into each strip: enough estimated tiles to cover the main extent,
    // plus 4. Empty when the count does not fit an int.
    static std::optional<int> tilesPerStrip(double mainExtent, double thickness, FlowOrientation orientation);

    // A measured aspect made usable: not a number or infinite reads as unknown (1.0),
    // anything below 0.05 is held at 0.05.
    static double tileAspect(double aspect);
    // Length along the strip of a tile of `aspect` (made usable first).
    static double tileLength(double aspect, double thickness, FlowOrientation orientation);
    // Sum of the tile lengths plus the spacing between them; 0 for an empty strip or no thickness.
    static double stripLength(std::span<const double> tileLengths, double thickness, double spacing);
    // How many times a strip's tile sequence is laid end to end so that it covers the
    // main extent wherever in its cycle it stands. At least 1.
    static int copies(double cycleLength, double mainExtent);

    // +1 or -1: odd strips run backwards when bidirectional; `reversed` flips every strip.
    static int scrollDirection(int columnIndex, bool bidirectional, bool reversed);

    // The anchor that keeps the tile at the viewer's edge in place when the tile
    // lengths of a strip change from `oldLengths` to `newLengths`. `travel` is the
    // strip's own scroll (its direction times the wall's offset). Counts that differ
    // or are 0 keep `anchor`.
    static double trackAnchor(std::span<const double> oldLengths, std::span<const double> newLengths, double travel,
        double anchor, double spacing);

    // `value` modulo `cycle`, in 0 ..< cycle; 0 when the cycle is not positive.
    static double wrap(double value, double cycle);
};

} // namespace sorvane
