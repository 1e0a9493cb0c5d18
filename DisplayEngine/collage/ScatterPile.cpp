#include "collage/ScatterPile.h"

#include "bundle/Pcg32.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sorvane {

namespace {

// Uniform in low ... high with both ends reachable.
double uniform(Pcg32 &random, double low, double high)
{
    const double fraction = double(random.next()) / double(std::numeric_limits<quint32>::max());
    return std::lerp(low, high, fraction);
}

QPointF landingPoint(Pcg32 &random)
{
    const double x = uniform(random, ScatterPile::minUnitX, ScatterPile::maxUnitX);
    const double y = uniform(random, ScatterPile::minUnitY, ScatterPile::maxUnitY);
    return {x, y};
}

double squaredDistanceToNearest(const QPointF &point, const QList<CollageDrop> &pile)
{
    double nearest = std::numeric_limits<double>::infinity();
    for (const CollageDrop &drop : pile) {
        const QPointF d = point - drop.unit;
        nearest = std::min(nearest, d.x() * d.x() + d.y() * d.y());
    }
    return nearest;
}

} // namespace

QList<CollageDrop> ScatterPile::appending(const CollageDrop &drop, QList<CollageDrop> pile, qsizetype max)
{
    pile.append(drop);
    const qsizetype keep = std::max<qsizetype>(max, 0);
    if (pile.size() > keep)
        pile.remove(0, pile.size() - keep);
    return pile;
}

QList<CollageDrop> ScatterPile::raising(const QUuid &item, QList<CollageDrop> pile)
{
    const auto found
        = std::find_if(pile.begin(), pile.end(), [&](const CollageDrop &d) { return d.item.id() == item; });
    if (found != pile.end())
        std::rotate(found, found + 1, pile.end());
    return pile;
}

QList<CollageDrop> ScatterPile::lifting(QList<CollageDrop> pile)
{
    if (!pile.isEmpty())
        pile.removeLast();
    return pile;
}

CollageDrop ScatterPile::dropping(const ImageItem &item, const QList<CollageDrop> &pile, Pcg32 &random)
{
    QPointF best = landingPoint(random);
    if (!pile.isEmpty()) {
        double bestScore = squaredDistanceToNearest(best, pile);
        for (int i = 1; i < candidateCount; ++i) {
            const QPointF candidate = landingPoint(random);
            const double score = squaredDistanceToNearest(candidate, pile);
            // Strictly better only, so a tie keeps the earlier point.
            if (score > bestScore) {
                best = candidate;
                bestScore = score;
            }
        }
    }
    const double rotation = uniform(random, -maxRotation, maxRotation);
    const double scale = uniform(random, minScale, maxScale);
    return CollageDrop {item, best, rotation, scale};
}

} // namespace sorvane
