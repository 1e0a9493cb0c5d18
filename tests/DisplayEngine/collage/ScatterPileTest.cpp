#include "CollageTestItems.h"

#include "bundle/Pcg32.h"
#include "collage/ScatterPile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace sorvane {
namespace {

using collagetest::makePool;

QList<CollageDrop> pileOf(const QList<ImageItem> &items)
{
    QList<CollageDrop> pile;
    for (qsizetype i = 0; i < items.size(); ++i)
        pile.append({items[i], QPointF(0.2 + 0.05 * double(i), 0.5), double(i), 1.0});
    return pile;
}

QList<QUuid> order(const QList<CollageDrop> &pile)
{
    QList<QUuid> ids;
    for (const CollageDrop &drop : pile)
        ids.append(drop.item.id());
    return ids;
}

TEST(ScatterPile, AppendingPutsTheDropOnTopAndTrimsFromTheBottom)
{
    const QList<ImageItem> items = makePool(20);
    struct Case {
        qsizetype before;
        qsizetype max;
        qsizetype firstKept; // index in `items` of the bottom drop afterwards
        qsizetype size;
    };
    const Case cases[] = {
        {0, 12, 19, 1},
        {11, 12, 0, 12},
        {12, 12, 1, 12}, // the thirteenth drop removes the oldest
        {15, 12, 4, 12}, // an overfull pile comes down to the maximum
        {3, 1, 19, 1},
        {3, 0, -1, 0},
        {3, -2, -1, 0},
    };
    for (const Case &c : cases) {
        const QList<CollageDrop> pile = pileOf(items.first(c.before));
        const CollageDrop drop {items[19], QPointF(0.5, 0.5), 3.0, 1.1};
        const QList<CollageDrop> result = ScatterPile::appending(drop, pile, c.max);
        ASSERT_EQ(result.size(), c.size) << "before " << c.before << ", max " << c.max;
        if (c.size == 0)
            continue;
        EXPECT_EQ(result.last(), drop);
        EXPECT_EQ(result.first().item, items[c.firstKept]);
        // What remains below keeps its order.
        EXPECT_EQ(result.mid(0, c.size - 1), pile.mid(pile.size() - (c.size - 1)));
    }
    EXPECT_EQ(ScatterPile::appending({items[0], {}, 0, 1}, pileOf(items.mid(1, 12))).size(), ScatterPile::scatterMax);
}

TEST(ScatterPile, RaisingMovesOneDropToTheTop)
{
    const QList<ImageItem> items = makePool(5);
    const QList<CollageDrop> pile = pileOf(items.first(4));
    struct Case {
        QUuid raised;
        QList<int> expected; // indices into `items`, bottom first
    };
    const Case cases[] = {
        {items[0].id(), {1, 2, 3, 0}}, {items[1].id(), {0, 2, 3, 1}}, {items[3].id(), {0, 1, 2, 3}}, // already on top
        {items[4].id(), {0, 1, 2, 3}}, // not on the table
    };
    for (const Case &c : cases) {
        QList<QUuid> expected;
        for (int i : c.expected)
            expected.append(items[i].id());
        const QList<CollageDrop> raised = ScatterPile::raising(c.raised, pile);
        EXPECT_EQ(order(raised), expected);
        // The drop moves whole: position, rotation and scale go with it.
        for (const CollageDrop &drop : raised)
            EXPECT_TRUE(pile.contains(drop));
    }
    EXPECT_TRUE(ScatterPile::raising(items[0].id(), {}).isEmpty());
}

TEST(ScatterPile, LiftingTakesTheTopDropOff)
{
    const QList<ImageItem> items = makePool(3);
    const QList<CollageDrop> pile = pileOf(items);
    EXPECT_EQ(ScatterPile::lifting(pile), pile.first(2));
    EXPECT_TRUE(ScatterPile::lifting(pile.first(1)).isEmpty());
    EXPECT_TRUE(ScatterPile::lifting({}).isEmpty());
}

TEST(ScatterPile, DropsLandWithinTheTableWithBoundedTiltAndSize)
{
    const QList<ImageItem> items = makePool(13);
    bool tiltedLeft = false;
    bool tiltedRight = false;
    for (quint64 seed = 0; seed < 300; ++seed) {
        Pcg32 random(seed);
        // Every pile size from empty (the first drop) to full.
        const QList<CollageDrop> pile = pileOf(items.first(qsizetype(seed % 13)));
        const CollageDrop drop = ScatterPile::dropping(items[12], pile, random);
        EXPECT_EQ(drop.item, items[12]);
        EXPECT_GE(drop.unit.x(), 0.16) << seed;
        EXPECT_LE(drop.unit.x(), 0.84) << seed;
        EXPECT_GE(drop.unit.y(), 0.18) << seed;
        EXPECT_LE(drop.unit.y(), 0.82) << seed;
        EXPECT_GE(drop.rotation, -13.0) << seed;
        EXPECT_LE(drop.rotation, 13.0) << seed;
        EXPECT_GE(drop.scale, 0.85) << seed;
        EXPECT_LE(drop.scale, 1.15) << seed;
        tiltedLeft |= drop.rotation < -6.5;
        tiltedRight |= drop.rotation > 6.5;
    }
    // The whole tilt range is used, not one side of it.
    EXPECT_TRUE(tiltedLeft);
    EXPECT_TRUE(tiltedRight);
}

TEST(ScatterPile, ANewDropKeepsClearOfThePhotosAlreadyDown)
{
    const QList<ImageItem> items = makePool(2);
    struct Case {
        QPointF existing;
        double minDistance; // the best of 20 candidates is all but certainly this far away
    };
    const Case cases[] = {
        {QPointF(0.16, 0.18), 0.5},
        {QPointF(0.84, 0.82), 0.5},
        {QPointF(0.16, 0.82), 0.5},
        {QPointF(0.5, 0.5), 0.28},
    };
    for (const Case &c : cases) {
        for (quint64 seed = 0; seed < 50; ++seed) {
            Pcg32 random(seed);
            const QList<CollageDrop> pile {{items[0], c.existing, 0.0, 1.0}};
            const CollageDrop drop = ScatterPile::dropping(items[1], pile, random);
            const QPointF d = drop.unit - c.existing;
            EXPECT_GE(std::hypot(d.x(), d.y()), c.minDistance) << "seed " << seed;
        }
    }
}

TEST(ScatterPile, DroppingIsReproducibleFromTheSeed)
{
    const QList<ImageItem> items = makePool(4);
    const QList<CollageDrop> pile = pileOf(items.first(3));
    Pcg32 first(42);
    Pcg32 second(42);
    Pcg32 other(43);
    const CollageDrop a = ScatterPile::dropping(items[3], pile, first);
    EXPECT_EQ(a, ScatterPile::dropping(items[3], pile, second));
    EXPECT_NE(a, ScatterPile::dropping(items[3], pile, other));
}

} // namespace
} // namespace sorvane
