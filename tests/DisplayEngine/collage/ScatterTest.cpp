#include "CollageTestItems.h"
#include "bundle/Pcg32.h"
#include "collage/ScatterDeck.h"
#include "collage/ScatterPile.h"

#include <gtest/gtest.h>

#include <cmath>

namespace sorvane {
namespace {

using collagetest::idsOf;
using collagetest::makePool;

QList<CollageDrop> pileOf(const QList<ImageItem> &items)
{
    QList<CollageDrop> pile;
    for (qsizetype i = 0; i < items.size(); ++i)
        pile.append({items[i], QPointF(0.2 + 0.05 * double(i), 0.5), double(i), 1.0});
    return pile;
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

TEST(ScatterPile, RaisingAndLiftingMoveWholeDrops)
{
    const QList<CollageDrop> pile = pileOf(makePool(4));
    // Raised to the top with its place, tilt and size; what is on top or not on the table stays.
    EXPECT_EQ(ScatterPile::raising(pile[1].item.id(), pile), QList<CollageDrop>({pile[0], pile[2], pile[3], pile[1]}));
    EXPECT_EQ(ScatterPile::raising(pile[3].item.id(), pile), pile);
    EXPECT_EQ(ScatterPile::raising(QUuid::createUuid(), pile), pile);
    EXPECT_EQ(ScatterPile::lifting(pile), pile.first(3));
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

QList<QUuid> dealMany(ScatterDeck &deck, int count, Pcg32 &random, const QSet<QUuid> &onScreen = {})
{
    QList<QUuid> dealt;
    for (int i = 0; i < count; ++i) {
        const std::optional<ImageItem> item = deck.deal(onScreen, random);
        if (!item)
            break;
        dealt.append(item->id());
    }
    return dealt;
}

TEST(ScatterDeck, DealsEveryItemOnceBeforeAnyComesAgain)
{
    for (const int size : {1, 2, 7, 30}) {
        const QList<ImageItem> pool = makePool(size);
        ScatterDeck deck(pool);
        Pcg32 random(7);
        for (int round = 0; round < 3; ++round) {
            const QList<QUuid> dealt = dealMany(deck, size, random);
            EXPECT_EQ(QSet<QUuid>(dealt.cbegin(), dealt.cend()), idsOf(pool)) << "size " << size << ", round " << round;
        }
    }
}

TEST(ScatterDeck, KeepsItemsOnScreenOutOfTheDeal)
{
    const QList<ImageItem> pool = makePool(6);
    struct Case {
        QList<int> onScreen;
        int deals;
    };
    const Case cases[] = {
        {{0, 1, 2}, 9},
        {{0, 1, 2, 3, 4}, 5}, // one item left: dealt every time
        {{5}, 12},
    };
    for (const Case &c : cases) {
        QSet<QUuid> onScreen;
        for (int i : c.onScreen)
            onScreen.insert(pool[i].id());
        for (quint64 seed = 0; seed < 20; ++seed) {
            ScatterDeck deck(pool);
            Pcg32 random(seed);
            // Part of a round dealt first, so the deck runs out mid-deal.
            dealMany(deck, int(seed % 6), random);
            for (const QUuid &dealt : dealMany(deck, c.deals, random, onScreen))
                EXPECT_FALSE(onScreen.contains(dealt)) << "seed " << seed;
        }
    }
}

} // namespace
} // namespace sorvane
