#pragma once

#include "collage/CollageDrop.h"

#include <QList>
#include <QUuid>

namespace sorvane {

class Pcg32;

// The Scatter table's pile of photos, bottom first. Pure functions: each returns the
// new pile.
class ScatterPile {
public:
    static constexpr qsizetype scatterMax = 12;
    // Where a photo's centre may land, as fractions of the wall, ends included: far
    // enough in that a tilted photo still shows most of itself.
    static constexpr double minUnitX = 0.16;
    static constexpr double maxUnitX = 0.84;
    static constexpr double minUnitY = 0.18;
    static constexpr double maxUnitY = 0.82;
    static constexpr int candidateCount = 20;
    static constexpr double maxRotation = 13.0; // degrees either way
    static constexpr double minScale = 0.85;
    static constexpr double maxScale = 1.15;

    // `drop` on top; then the oldest drops leave from the bottom until at most `max`
    // remain (a negative max counts as 0).
    static QList<CollageDrop> appending(const CollageDrop &drop, QList<CollageDrop> pile, qsizetype max = scatterMax);
    // The drop of `item` moved to the top, the others keeping their order; the pile as
    // it was when the item is not on it.
    static QList<CollageDrop> raising(const QUuid &item, QList<CollageDrop> pile);
    // The pile without its top drop.
    static QList<CollageDrop> lifting(QList<CollageDrop> pile);

    // Where and how `item` falls onto `pile`: on an empty table anywhere in the landing
    // area, otherwise at the best of `candidateCount` points, the one farthest from its
    // nearest photo, so new photos cover old ones as little as possible.
    static CollageDrop dropping(const ImageItem &item, const QList<CollageDrop> &pile, Pcg32 &random);
};

} // namespace sorvane
