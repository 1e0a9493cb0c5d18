#include "collage/CollageWall.h"
#include "CollageTestItems.h"
#include "bundle/Pcg32.h"
#include "collage/CollageAnimation.h"
#include "collage/CollageCoordinator.h"
#include "collage/CollageVariedTemplate.h"

#include <gtest/gtest.h>

#include <QSet>
#include <limits>
#include <memory>
#include <tuple>
#include <vector>

namespace sorvane {
namespace {

using collagetest::makePool;

constexpr CollageLayout varied = CollageLayout::collage;

struct Change {
    CollageMutationKind kind;
    CollageAnimation animation;
    bool operator==(const Change &) const = default;
};

void record(CollageWall &wall, std::vector<Change> &changes)
{
    wall.setChangeHandler([&changes](CollageMutationKind kind, const CollageAnimation &animation) {
        changes.push_back({kind, animation});
    });
}

bool allDistinct(const QList<QUuid> &ids)
{
    return QSet<QUuid>(ids.cbegin(), ids.cend()).size() == ids.size();
}

QList<int> stripsOf(int slots, int strips)
{
    QList<int> columnOf;
    for (int i = 0; i < slots; ++i)
        columnOf.append(i % strips);
    return columnOf;
}

TEST(CollageWall, VariedSlotsAdvanceInTurnOneBatchPerChange)
{
    const QList<ImageItem> pool = makePool(12);
    CollageWall wall(varied, pool, 0, 5);
    std::vector<Change> changes;
    record(wall, changes);

    const std::vector<qsizetype> expectedSlots {0, 1, 2, 3, 4, 5, 0, 1, 2};
    for (size_t i = 0; i < expectedSlots.size(); ++i) {
        const QList<QUuid> before = wall.state().slots;
        ASSERT_TRUE(wall.advance());
        const QList<QUuid> after = wall.state().slots;
        const qsizetype slot = expectedSlots[i];
        for (qsizetype s = 0; s < after.size(); ++s) {
            if (s != slot)
                EXPECT_EQ(after[s], before[s]) << "change " << i;
        }
        EXPECT_NE(after[slot], before[slot]);
        EXPECT_TRUE(allDistinct(after)) << "change " << i;
        EXPECT_EQ(wall.history().batches().last(), CollageWallHistory::Batch({{slot, before[slot], after[slot]}}));
        EXPECT_EQ(wall.slotHistory().earlier(slot).last(), before[slot]);
    }
    EXPECT_EQ(wall.history().batches().size(), 8);
    EXPECT_EQ(changes.size(), expectedSlots.size());
    EXPECT_EQ(changes.front(), (Change {CollageMutationKind::advanceSlot, {}}));
}

TEST(CollageWall, FlowReplacesSeveralRandomSlotsPerChange)
{
    const QList<ImageItem> pool = makePool(40);
    CollageWall wall(CollageLayout::flow, pool, 0, 11);
    wall.seedFlow(stripsOf(12, 3), 1200, 800, 3, FlowOrientation::horizontal);
    const CollageWallState &state = wall.state();
    EXPECT_EQ(state.slots.size(), 12);
    EXPECT_TRUE(allDistinct(state.slots));
    EXPECT_EQ(state.flowColumnOf, stripsOf(12, 3));
    // What the wall was seeded for decides when it must be seeded again.
    EXPECT_EQ(std::tuple(state.flowSeededWidth, state.flowSeededHeight, state.flowSeededColumns, state.flowOrientation),
        std::tuple(1200.0, 800.0, 3, FlowOrientation::horizontal));

    QSet<qsizetype> touched;
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(wall.advance(2));
        const CollageWallHistory::Batch batch = wall.history().batches().last();
        ASSERT_EQ(batch.size(), 2);
        EXPECT_NE(batch[0].slot, batch[1].slot);
        EXPECT_TRUE(allDistinct(state.slots));
        touched.insert(batch[0].slot);
        touched.insert(batch[1].slot);
    }
    // Random slots, not the same few again and again.
    EXPECT_GT(touched.size(), 8);

    // Reseeding keeps the items of the slots that remain and fills the new ones.
    const QList<QUuid> before = state.slots;
    wall.seedFlow(stripsOf(8, 2), 800, 800, 2, FlowOrientation::vertical);
    EXPECT_EQ(state.slots, before.first(8));
    wall.seedFlow(stripsOf(16, 4), 1600, 800, 4, FlowOrientation::vertical);
    EXPECT_EQ(state.slots.first(8), before.first(8));
    EXPECT_EQ(state.slots.size(), 16);
    EXPECT_TRUE(allDistinct(state.slots));
    // The wall's history outlives reseeding; swaps of slots that no longer exist are skipped.
    wall.seedFlow(stripsOf(2, 2), 400, 400, 2, FlowOrientation::vertical);
    EXPECT_EQ(wall.history().batches().size(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(wall.step(CollageWallStep::back));
    EXPECT_EQ(state.slots.size(), 2);
}

TEST(CollageWall, FollowersCopyEachOfTheLeadersChanges)
{
    const QList<ImageItem> pool = makePool(30);
    CollageCoordinator coordinator;
    CollageWall leader(varied, pool, 0, 1, CollageRole::mirrorLeader, &coordinator);
    CollageWall first(varied, pool, 0, 2, CollageRole::mirrorFollower, &coordinator);
    CollageWall second(varied, pool, 0, 3, CollageRole::mirrorFollower, &coordinator);
    CollageWall independent(varied, pool, 0, 4, CollageRole::independent, &coordinator);
    const CollageWallState independentBefore = independent.capture();
    std::vector<Change> firstChanges;
    record(first, firstChanges);
    std::vector<Change> secondChanges;
    record(second, secondChanges);

    // The first follower to join takes the leader's opening broadcast; the second
    // catches up with the leader's next change.
    EXPECT_EQ(first.state().slots, leader.state().slots);
    EXPECT_NE(second.state().slots, leader.state().slots);
    const QUuid leavingSlot0 = leader.state().slots[0];

    const auto expectLevel = [&](const char *after) {
        for (const CollageWall *follower : {&first, &second}) {
            EXPECT_EQ(follower->state().slots, leader.state().slots) << after;
            EXPECT_EQ(follower->state().drops, leader.state().drops) << after;
            EXPECT_EQ(follower->state().variantIndex, leader.state().variantIndex) << after;
        }
    };
    const qint64 seqBefore = coordinator.seq();
    ASSERT_TRUE(leader.advance());
    expectLevel("advance");
    ASSERT_TRUE(leader.reshuffleVariant());
    expectLevel("reshuffle");
    ASSERT_TRUE(leader.step(CollageWallStep::back));
    expectLevel("step");
    ASSERT_TRUE(leader.stepSlot(4, CollageWallStep::forward));
    expectLevel("slot step");
    EXPECT_EQ(coordinator.seq(), seqBefore + 4);
    EXPECT_EQ(coordinator.mirror(), std::nullopt); // every follower took every broadcast

    const std::vector<Change> expected {
        {CollageMutationKind::advanceSlot, {}},
        {CollageMutationKind::reshuffleVariant, CollageAnimation::easeInOut(0.7)},
        {CollageMutationKind::advanceSlot, {}},
        {CollageMutationKind::advanceSlot, {}},
    };
    EXPECT_EQ(firstChanges, expected);
    EXPECT_EQ(secondChanges, expected);
    EXPECT_EQ(independent.state(), independentBefore);

    // A follower keeps what left its slots, as the leader does.
    EXPECT_TRUE(first.slotHistory().earlier(0).contains(leavingSlot0));
}

TEST(CollageWall, ScatterPhotosAreRaisedAndStepsLiftAndPutBackTheTopOne)
{
    CollageWall wall(CollageLayout::scatter, makePool(10), 0, 6);
    ASSERT_TRUE(wall.dropNext() && wall.dropNext());
    const QList<CollageDrop> three = wall.state().drops;
    EXPECT_FALSE(wall.raise(three.last().item.id())) << "already on top";
    ASSERT_TRUE(wall.raise(three[0].item.id()));
    EXPECT_EQ(wall.state().drops, QList<CollageDrop>({three[1], three[2], three[0]}));
    ASSERT_TRUE(wall.step(CollageWallStep::back));
    EXPECT_EQ(wall.state().drops, QList<CollageDrop>({three[1], three[2]}));
    ASSERT_TRUE(wall.step(CollageWallStep::forward));
    EXPECT_EQ(wall.state().drops.last(), three[0]);
    EXPECT_FALSE(wall.step(CollageWallStep::forward));
}

TEST(CollageWall, AnEmptyPoolMakesAnEmptyWallThatNeverChanges)
{
    for (const CollageLayout layout : allCollageLayouts) {
        CollageWall empty(layout, {}, 0, 1);
        empty.seedFlow(stripsOf(6, 2), 800, 600, 2, FlowOrientation::vertical);
        EXPECT_TRUE(empty.state().slots.isEmpty() && empty.state().drops.isEmpty());
        EXPECT_FALSE(empty.advance() || empty.dropNext() || empty.step(CollageWallStep::back));
    }
    // Only a Flow wall asks for slot items or strips, and only a Varied one reshuffles.
    EXPECT_EQ(CollageWall(varied, makePool(2), 0, 1).flowSlotItem(0), QUuid());
    EXPECT_FALSE(CollageWall(CollageLayout::flow, makePool(2), 0, 1).reshuffleVariant());
    // A pool smaller than the wall repeats items rather than leaving slots empty.
    EXPECT_EQ(CollageWall(varied, makePool(2), 0, 1).state().slots.size(), CollageVariedTemplate::slotCount);
}

TEST(CollageWall, AFollowerOutlivingItsCoordinatorStaysUsable)
{
    auto coordinator = std::make_unique<CollageCoordinator>();
    CollageWall follower(varied, makePool(10), 0, 2, CollageRole::mirrorFollower, coordinator.get());
    coordinator.reset();
    EXPECT_TRUE(follower.stepSlot(0, CollageWallStep::forward));
    follower.setRole(CollageRole::mirrorLeader);
    EXPECT_TRUE(follower.advance());
}

TEST(CollageCoordinator, FollowersThatJoinOrLeaveDoNotStrandABroadcast)
{
    CollageCoordinator coordinator;
    // Published before any follower: it waits for the first one.
    coordinator.broadcast({}, {}, 1, CollageMutationKind::advanceSlot);
    const auto late = coordinator.attachFollower();
    EXPECT_EQ(coordinator.consume(late)->seq, 1);
    EXPECT_EQ(coordinator.consume(late), std::nullopt) << "once only";
    EXPECT_EQ(coordinator.consume(12345), std::nullopt);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);

    // A follower that leaves without taking it does not hold it up for the others.
    const auto leaving = coordinator.attachFollower();
    coordinator.broadcast({}, {}, 2, CollageMutationKind::advanceSlot);
    EXPECT_TRUE(coordinator.consume(late));
    EXPECT_TRUE(coordinator.mirror());
    coordinator.detachFollower(leaving);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);

    // One that joins while a broadcast is pending for others takes it too.
    coordinator.broadcast({}, {}, 3, CollageMutationKind::advanceSlot);
    const auto joining = coordinator.attachFollower();
    EXPECT_TRUE(coordinator.consume(late));
    EXPECT_TRUE(coordinator.mirror());
    EXPECT_EQ(coordinator.consume(joining)->seq, 3);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);

    // The last follower leaving before anyone took it leaves it for the next to join.
    coordinator.detachFollower(late);
    coordinator.detachFollower(joining);
    coordinator.broadcast({}, {}, 4, CollageMutationKind::advanceSlot);
    EXPECT_TRUE(coordinator.mirror());
    EXPECT_EQ(coordinator.consume(coordinator.attachFollower())->seq, 4);
}

} // namespace
} // namespace sorvane
