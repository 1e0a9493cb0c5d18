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

    CollageWallHistory history;
    history.record(swapAt(3, 10)); // no batch begun: it starts one
    ASSERT_EQ(history.batches(), QList<Batch>({{swapAt(3, 10)}}));
    CollageWallHistory stepped = history;
    EXPECT_EQ(stepped, history);
    ASSERT_TRUE(stepped.stepBack());
    EXPECT_EQ(stepped.forwardBatches(), history.batches());
    EXPECT_FALSE(stepped == history);
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

    // Each slot remembers a bounded number of items, the newest.
    for (uint n = 1; n <= 30; ++n)
        history.pushOutgoing(0, id(n));
    ASSERT_EQ(history.earlier(0).size(), CollageSlotHistory::slotHistoryDepth);
    EXPECT_EQ(history.earlier(0).last(), id(30));
    history.pushOutgoing(7, id(1));
    EXPECT_TRUE(history.earlier(7).isEmpty()) << "a slot out of range is ignored";
}

} // namespace
} // namespace sorvane
