#include "collage/CollageWallHistory.h"
#include "collage/CollageSlotHistory.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Batch = CollageWallHistory::Batch;

// Distinct, recognisable identities: id(n) has n in its first field.
QUuid id(uint n)
{
    return QUuid(n, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1);
}

CollageSlotSwap swapAt(qsizetype slot, uint n)
{
    return {slot, id(n), id(n + 1)};
}

TEST(CollageWallHistory, KeepsTheNewestBatchesUpToItsDepth)
{
    struct Case {
        qsizetype depth;
        int batches;
        std::vector<uint> kept; // first swap's tag of each kept batch, oldest first
    };
    const Case cases[] = {
        {8, 9, {2, 3, 4, 5, 6, 7, 8, 9}},
        {8, 8, {1, 2, 3, 4, 5, 6, 7, 8}},
        {8, 20, {13, 14, 15, 16, 17, 18, 19, 20}},
        {3, 5, {3, 4, 5}},
        {1, 3, {3}},
        {0, 3, {3}}, // held at 1
        {-4, 2, {2}},
    };
    for (const Case &c : cases) {
        CollageWallHistory history(c.depth);
        for (int n = 1; n <= c.batches; ++n) {
            history.beginBatch();
            history.record(swapAt(0, uint(n)));
        }
        std::vector<uint> kept;
        for (const Batch &batch : history.batches()) {
            ASSERT_EQ(batch.size(), 1);
            kept.push_back(batch.first().outgoing.data1);
        }
        EXPECT_EQ(kept, c.kept) << "depth " << c.depth << ", batches " << c.batches;
    }
    EXPECT_EQ(CollageWallHistory().depth(), 8);
}

TEST(CollageWallHistory, RecordGoesIntoTheNewestBatchStartingOneWhenEmpty)
{
    CollageWallHistory history;
    history.record(swapAt(3, 10));
    ASSERT_EQ(history.batches().size(), 1);
    EXPECT_EQ(history.batches().first(), Batch({swapAt(3, 10)}));

    history.record(swapAt(4, 20));
    history.beginBatch();
    history.record(swapAt(5, 30));
    EXPECT_EQ(history.batches(), QList<Batch>({{swapAt(3, 10), swapAt(4, 20)}, {swapAt(5, 30)}}));
}

TEST(CollageWallHistory, StepsBackAndForwardBatchByBatch)
{
    CollageWallHistory history;
    for (uint n : {10u, 20u, 30u}) {
        history.beginBatch();
        history.record(swapAt(0, n));
        history.record(swapAt(1, n + 5));
    }
    const Batch third {swapAt(0, 30), swapAt(1, 35)};
    const Batch second {swapAt(0, 20), swapAt(1, 25)};

    EXPECT_EQ(history.stepBack(), third);
    EXPECT_EQ(history.stepBack(), second);
    EXPECT_EQ(history.batches().size(), 1);
    EXPECT_EQ(history.forwardBatches(), QList<Batch>({third, second}));

    EXPECT_EQ(history.stepForward(), second);
    EXPECT_EQ(history.stepForward(), third);
    EXPECT_EQ(history.stepForward(), std::nullopt);
    EXPECT_EQ(history.batches().size(), 3);

    EXPECT_TRUE(history.stepBack());
    EXPECT_TRUE(history.stepBack());
    EXPECT_TRUE(history.stepBack());
    EXPECT_EQ(history.stepBack(), std::nullopt);
    EXPECT_TRUE(history.batches().isEmpty());
}

TEST(CollageWallHistory, ANewChangeDropsWhatWasSteppedBackOver)
{
    CollageWallHistory history;
    history.record(swapAt(0, 10));
    history.beginBatch();
    history.record(swapAt(0, 20));
    ASSERT_TRUE(history.stepBack());

    history.record(swapAt(0, 30)); // joins the remaining batch, not a new change
    EXPECT_EQ(history.forwardBatches().size(), 1);

    history.beginBatch();
    EXPECT_TRUE(history.forwardBatches().isEmpty());
    EXPECT_EQ(history.stepForward(), std::nullopt);
}

TEST(CollageWallHistory, SteppingForwardRespectsTheDepth)
{
    CollageWallHistory history(2);
    history.record(swapAt(0, 10));
    history.beginBatch();
    history.record(swapAt(0, 20));
    ASSERT_TRUE(history.stepBack());
    history.record(swapAt(1, 40)); // fills the one kept batch further
    ASSERT_TRUE(history.stepForward());
    history.beginBatch();
    history.record(swapAt(0, 50));
    EXPECT_EQ(history.batches(), QList<Batch>({{swapAt(0, 20)}, {swapAt(0, 50)}}));
}

TEST(CollageWallHistory, EqualityIsSameBatchesInSameOrder)
{
    const auto build = [](std::initializer_list<Batch> batches, qsizetype depth = 8) {
        CollageWallHistory history(depth);
        for (const Batch &batch : batches) {
            history.beginBatch();
            for (const CollageSlotSwap &swap : batch)
                history.record(swap);
        }
        return history;
    };
    const Batch a {swapAt(0, 1), swapAt(1, 2)};
    const Batch aReordered {swapAt(1, 2), swapAt(0, 1)};
    const Batch b {swapAt(2, 3)};

    struct Case {
        CollageWallHistory left;
        CollageWallHistory right;
        bool equal;
    };
    const Case cases[] = {
        {build({a, b}), build({a, b}), true},
        {build({a, b}), build({a, b}, 5), true},
        {build({}), build({}), true},
        {build({a, b}), build({b, a}), false},
        {build({a}), build({aReordered}), false},
        {build({a}), build({a, b}), false},
        {build({a}), build({a, {}}), false},
        {build({{{0, id(1), id(2)}}}), build({{{0, id(1), id(3)}}}), false},
        {build({{{0, id(1), id(2)}}}), build({{{1, id(1), id(2)}}}), false},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(cases[i].left == cases[i].right, cases[i].equal) << "case " << i;

    CollageWallHistory steppedBack = build({a, b});
    ASSERT_TRUE(steppedBack.stepBack());
    EXPECT_EQ(steppedBack, build({a}));
}

TEST(CollageSlotHistory, StepsThroughOneSlotsEarlierAndLaterItems)
{
    CollageSlotHistory history;
    history.resize(2);
    history.pushOutgoing(1, id(1));
    history.pushOutgoing(1, id(2));
    // Now showing id(3) in slot 1.

    EXPECT_EQ(history.stepBack(1, id(3)), id(2));
    EXPECT_EQ(history.stepBack(1, id(2)), id(1));
    EXPECT_EQ(history.stepBack(1, id(1)), std::nullopt);
    EXPECT_EQ(history.later(1), QList<QUuid>({id(3), id(2)}));

    EXPECT_EQ(history.stepForward(1, id(1)), id(2));
    EXPECT_EQ(history.earlier(1), QList<QUuid>({id(1)}));

    // A new item in the slot forgets what lay ahead.
    history.pushOutgoing(1, id(2));
    EXPECT_TRUE(history.later(1).isEmpty());
    EXPECT_EQ(history.stepForward(1, id(9)), std::nullopt);

    EXPECT_TRUE(history.earlier(0).isEmpty());
    EXPECT_EQ(history.stepBack(0, id(9)), std::nullopt);
}

TEST(CollageSlotHistory, KeepsTwentyFourItemsPerSlotAndIgnoresSlotsOutOfRange)
{
    CollageSlotHistory history;
    history.resize(1);
    for (uint n = 1; n <= 30; ++n)
        history.pushOutgoing(0, id(n));
    const QList<QUuid> earlier = history.earlier(0);
    ASSERT_EQ(earlier.size(), CollageSlotHistory::slotHistoryDepth);
    EXPECT_EQ(earlier.first(), id(7));
    EXPECT_EQ(earlier.last(), id(30));

    // Stepping back over all of them caps the later list the same way.
    QUuid current = id(31);
    for (int i = 0; i < 24; ++i)
        current = *history.stepBack(0, current);
    EXPECT_EQ(current, id(7));
    EXPECT_EQ(history.later(0).size(), 24);
    EXPECT_EQ(history.later(0).first(), id(31));

    for (const qsizetype slot : {qsizetype(-1), qsizetype(1), qsizetype(100)}) {
        history.pushOutgoing(slot, id(1));
        EXPECT_TRUE(history.earlier(slot).isEmpty());
        EXPECT_EQ(history.stepBack(slot, id(2)), std::nullopt);
        EXPECT_EQ(history.stepForward(slot, id(2)), std::nullopt);
    }

    // Growing keeps the existing slot; shrinking forgets the slots that go.
    history.resize(3);
    EXPECT_EQ(history.later(0).size(), 24);
    history.pushOutgoing(2, id(5));
    history.resize(2);
    history.resize(3);
    EXPECT_TRUE(history.earlier(2).isEmpty());
}

} // namespace
} // namespace sorvane
