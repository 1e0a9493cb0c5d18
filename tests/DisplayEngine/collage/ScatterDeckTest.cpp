#include "CollageTestItems.h"

#include "bundle/Pcg32.h"
#include "collage/ScatterDeck.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using collagetest::idsOf;
using collagetest::makePool;

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

TEST(ScatterDeck, ShufflesRatherThanDealingInPoolOrder)
{
    const QList<ImageItem> pool = makePool(12);
    QList<QUuid> poolOrder;
    for (const ImageItem &item : pool)
        poolOrder.append(item.id());
    ScatterDeck deck(pool);
    Pcg32 random(1);
    const QList<QUuid> first = dealMany(deck, 12, random);
    const QList<QUuid> second = dealMany(deck, 12, random);
    EXPECT_NE(first, poolOrder);
    EXPECT_NE(first, second); // reshuffled, not replayed
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

TEST(ScatterDeck, StillDealsWhenEverythingIsOnScreenAndNothingFromAnEmptyPool)
{
    const QList<ImageItem> pool = makePool(3);
    ScatterDeck deck(pool);
    Pcg32 random(5);
    const QList<QUuid> dealt = dealMany(deck, 4, random, idsOf(pool));
    EXPECT_EQ(dealt.size(), 4);
    for (const QUuid &id : dealt)
        EXPECT_TRUE(idsOf(pool).contains(id));

    ScatterDeck empty;
    EXPECT_EQ(empty.deal({}, random), std::nullopt);
}

TEST(ScatterDeck, FindsItemsByIdentity)
{
    const QList<ImageItem> pool = makePool(3);
    const ScatterDeck deck(pool);
    ASSERT_NE(deck.find(pool[1].id()), nullptr);
    EXPECT_EQ(deck.find(pool[1].id())->url(), pool[1].url());
    EXPECT_EQ(deck.find(QUuid::createUuid()), nullptr);
    EXPECT_EQ(deck.find(QUuid()), nullptr);
}

TEST(ScatterDeck, SameSeedSameDeal)
{
    const QList<ImageItem> pool = makePool(10);
    ScatterDeck a(pool);
    ScatterDeck b(pool);
    Pcg32 ra(99);
    Pcg32 rb(99);
    EXPECT_EQ(dealMany(a, 25, ra), dealMany(b, 25, rb));
}

} // namespace
} // namespace sorvane
