#include "CollageTestItems.h"

#include "collage/CollageVariedTemplate.h"
#include "collage/CollageWall.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace sorvane {
namespace {

using collagetest::idsOf;
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

QList<QUuid> dropIds(const CollageWallState &state)
{
    QList<QUuid> ids;
    for (const CollageDrop &drop : state.drops)
        ids.append(drop.item.id());
    return ids;
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

TEST(CollageWall, AFreshWallShowsDistinctItemsOfItsPool)
{
    const QList<ImageItem> pool = makePool(10);
    const CollageWall variedWall(varied, pool, 3, 1);
    EXPECT_EQ(variedWall.state().layout, varied);
    EXPECT_EQ(variedWall.state().poolGeneration, 3);
    EXPECT_EQ(variedWall.state().slots.size(), CollageVariedTemplate::slotCount);
    EXPECT_TRUE(allDistinct(variedWall.state().slots));
    EXPECT_TRUE(idsOf(pool).contains(QSet<QUuid>(variedWall.state().slots.cbegin(), variedWall.state().slots.cend())));
    EXPECT_TRUE(variedWall.state().drops.isEmpty());

    const CollageWall scatter(CollageLayout::scatter, pool, 3, 1);
    ASSERT_EQ(scatter.state().drops.size(), 1);
    EXPECT_TRUE(scatter.state().slots.isEmpty());
    EXPECT_TRUE(idsOf(pool).contains(scatter.state().drops.first().item.id()));

    const CollageWall flow(CollageLayout::flow, pool, 3, 1);
    EXPECT_TRUE(flow.state().slots.isEmpty());

    for (const CollageLayout layout : {varied, CollageLayout::flow, CollageLayout::scatter}) {
        CollageWall empty(layout, {}, 0, 1);
        EXPECT_TRUE(empty.state().slots.isEmpty());
        EXPECT_TRUE(empty.state().drops.isEmpty());
        empty.seedFlow(stripsOf(6, 2), 800, 600, 2, FlowOrientation::vertical);
        EXPECT_FALSE(empty.advance());
        EXPECT_FALSE(empty.dropNext());
        EXPECT_FALSE(empty.step(CollageWallStep::back));
    }

    // A pool smaller than the wall repeats items rather than leaving slots empty.
    const CollageWall small(varied, makePool(2), 0, 1);
    EXPECT_EQ(small.state().slots.size(), 6);
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

TEST(CollageWall, StepsBackAndForwardThroughItsChanges)
{
    CollageWall wall(varied, makePool(20), 0, 8);
    std::vector<CollageWallState> states {wall.capture()};
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(wall.advance(i % 2 + 1)); // batches of one and of two swaps
        states.push_back(wall.capture());
    }

    for (int i = 3; i >= 0; --i) {
        ASSERT_TRUE(wall.step(CollageWallStep::back));
        EXPECT_EQ(wall.state(), states[size_t(i)]) << "back to " << i;
    }
    EXPECT_FALSE(wall.step(CollageWallStep::back));
    for (int i = 1; i <= 2; ++i) {
        ASSERT_TRUE(wall.step(CollageWallStep::forward));
        EXPECT_EQ(wall.state(), states[size_t(i)]) << "forward to " << i;
    }

    // A new change makes the undone ones unreachable.
    ASSERT_TRUE(wall.advance());
    EXPECT_FALSE(wall.step(CollageWallStep::forward));
    EXPECT_EQ(wall.history().batches().size(), 3);
}

TEST(CollageWall, SteppingBackKeepsEachSlotsOwnHistoryInStep)
{
    CollageWall wall(varied, makePool(20), 0, 2);
    const QUuid first = wall.state().slots[0];
    ASSERT_TRUE(wall.advance());
    const QUuid second = wall.state().slots[0];
    for (int i = 0; i < 5; ++i)
        ASSERT_TRUE(wall.advance());
    ASSERT_TRUE(wall.advance()); // slot 0 again
    const QUuid third = wall.state().slots[0];

    ASSERT_TRUE(wall.step(CollageWallStep::back));
    EXPECT_EQ(wall.state().slots[0], second);
    // "Previous" on the tile now shows what came before `second`, not `second` again.
    ASSERT_TRUE(wall.stepSlot(0, CollageWallStep::back));
    EXPECT_EQ(wall.state().slots[0], first);
    ASSERT_TRUE(wall.stepSlot(0, CollageWallStep::forward));
    ASSERT_TRUE(wall.stepSlot(0, CollageWallStep::forward));
    EXPECT_EQ(wall.state().slots[0], third);
}

TEST(CollageWall, ATileStepsThroughItsOwnItemsAndBringsNewOnesAtTheEnd)
{
    const QList<ImageItem> pool = makePool(12);
    CollageWall wall(varied, pool, 0, 4);
    std::vector<Change> changes;
    record(wall, changes);
    const QUuid original = wall.state().slots[2];

    EXPECT_FALSE(wall.stepSlot(2, CollageWallStep::back));
    EXPECT_FALSE(wall.stepSlot(-1, CollageWallStep::forward));
    EXPECT_FALSE(wall.stepSlot(6, CollageWallStep::forward));
    EXPECT_TRUE(changes.empty());

    ASSERT_TRUE(wall.stepSlot(2, CollageWallStep::forward));
    const QUuid fresh = wall.state().slots[2];
    EXPECT_NE(fresh, original);
    EXPECT_TRUE(allDistinct(wall.state().slots));
    ASSERT_TRUE(wall.stepSlot(2, CollageWallStep::back));
    EXPECT_EQ(wall.state().slots[2], original);
    ASSERT_TRUE(wall.stepSlot(2, CollageWallStep::forward));
    EXPECT_EQ(wall.state().slots[2], fresh);
    EXPECT_EQ(changes.size(), 3);
    // Clicks on a tile are the tile's own; the wall's history records its changes.
    EXPECT_TRUE(wall.history().batches().isEmpty());
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
    EXPECT_EQ(state.flowSeededWidth, 1200);
    EXPECT_EQ(state.flowSeededHeight, 800);
    EXPECT_EQ(state.flowSeededColumns, 3);
    EXPECT_EQ(state.flowOrientation, FlowOrientation::horizontal);

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

TEST(CollageWall, FlowSeedingMayAskForTheItemsOneByOne)
{
    CollageWall wall(CollageLayout::flow, makePool(10), 0, 3);
    QList<QUuid> asked;
    for (int slot = 0; slot < 6; ++slot)
        asked.append(wall.flowSlotItem(slot));
    EXPECT_TRUE(allDistinct(asked));
    EXPECT_EQ(wall.flowSlotItem(2), asked[2]);
    wall.seedFlow(stripsOf(6, 2), 800, 600, 2, FlowOrientation::vertical);
    EXPECT_EQ(wall.state().slots, asked);
    EXPECT_EQ(wall.flowSlotItem(-1), QUuid());

    CollageWall notFlow(varied, makePool(10), 0, 3);
    EXPECT_EQ(notFlow.flowSlotItem(6), QUuid());
    notFlow.seedFlow(stripsOf(12, 2), 800, 600, 2, FlowOrientation::vertical);
    EXPECT_EQ(notFlow.state().slots.size(), 6);
}

TEST(CollageWall, ScatterPilesUpToTwelveDistinctPhotos)
{
    CollageWall wall(CollageLayout::scatter, makePool(30), 0, 6);
    std::vector<Change> changes;
    record(wall, changes);
    QList<QUuid> dropped = dropIds(wall.state());
    for (int i = 0; i < 14; ++i) {
        ASSERT_TRUE(wall.dropNext());
        dropped.append(wall.state().drops.last().item.id());
        EXPECT_TRUE(allDistinct(dropIds(wall.state())));
    }
    // Fifteen dropped in all; the three oldest have gone from the bottom.
    EXPECT_EQ(dropIds(wall.state()), dropped.mid(3));
    EXPECT_EQ(changes.back(), (Change {CollageMutationKind::scatterDrop, CollageAnimation::scatterDrop()}));
    EXPECT_FALSE(wall.advance());
    EXPECT_FALSE(wall.reshuffleVariant());
    EXPECT_TRUE(wall.history().batches().isEmpty());
}

TEST(CollageWall, RaisingAScatterPhotoBringsItToTheTop)
{
    CollageWall wall(CollageLayout::scatter, makePool(10), 0, 6);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(wall.dropNext());
    std::vector<Change> changes;
    record(wall, changes);
    const QList<QUuid> before = dropIds(wall.state());

    EXPECT_FALSE(wall.raise(before.last()));
    EXPECT_FALSE(wall.raise(QUuid::createUuid()));
    EXPECT_TRUE(changes.empty());

    ASSERT_TRUE(wall.raise(before[1]));
    EXPECT_EQ(dropIds(wall.state()), QList<QUuid>({before[0], before[2], before[3], before[1]}));
    EXPECT_EQ(changes, std::vector<Change>({{CollageMutationKind::reorderDrop, CollageAnimation::spring(0.45, 0.7)}}));
}

TEST(CollageWall, StepsOnScatterLiftAndReplaceTheTopPhoto)
{
    CollageWall wall(CollageLayout::scatter, makePool(10), 0, 6);
    ASSERT_TRUE(wall.dropNext());
    ASSERT_TRUE(wall.dropNext());
    const QList<CollageDrop> three = wall.state().drops;
    ASSERT_EQ(three.size(), 3);

    ASSERT_TRUE(wall.step(CollageWallStep::back));
    ASSERT_TRUE(wall.step(CollageWallStep::back));
    EXPECT_EQ(wall.state().drops, three.first(1));
    ASSERT_TRUE(wall.step(CollageWallStep::forward));
    EXPECT_EQ(wall.state().drops, three.first(2));
    ASSERT_TRUE(wall.step(CollageWallStep::back));
    ASSERT_TRUE(wall.step(CollageWallStep::back));
    EXPECT_FALSE(wall.step(CollageWallStep::back));
    EXPECT_TRUE(wall.state().drops.isEmpty());

    // A new photo makes the lifted ones unreachable.
    ASSERT_TRUE(wall.dropNext());
    EXPECT_FALSE(wall.step(CollageWallStep::forward));
    EXPECT_EQ(wall.state().drops.size(), 1);
}

TEST(CollageWall, ReshuffleSwitchesTheVariedTemplate)
{
    CollageWall wall(varied, makePool(10), 0, 6);
    std::vector<Change> changes;
    record(wall, changes);
    const QList<QUuid> slotsBefore = wall.state().slots;
    for (int i = 0; i < 10; ++i) {
        const int before = wall.state().variantIndex;
        ASSERT_TRUE(wall.reshuffleVariant());
        EXPECT_NE(wall.state().variantIndex, before);
    }
    EXPECT_EQ(wall.state().slots, slotsBefore);
    EXPECT_EQ(changes.back(), (Change {CollageMutationKind::reshuffleVariant, CollageAnimation::easeInOut(0.7)}));

    CollageWall flow(CollageLayout::flow, makePool(10), 0, 6);
    EXPECT_FALSE(flow.reshuffleVariant());
}

TEST(CollageWall, TicksMakeTheChangesOfItsLayout)
{
    CollageWallSettings settings;
    settings.variedLayoutInterval = 8.0;
    settings.flowStaggerSwaps = false;
    settings.flowTilesPerChange = 3;

    CollageWall variedWall(varied, makePool(20), 0, 1);
    variedWall.setSettings(settings);
    CollageWall flow(CollageLayout::flow, makePool(40), 0, 1);
    flow.setSettings(settings);
    flow.seedFlow(stripsOf(10, 2), 800, 600, 2, FlowOrientation::vertical);
    CollageWall scatter(CollageLayout::scatter, makePool(20), 0, 1);
    scatter.setSettings(settings);

    for (int i = 1; i <= 16; ++i) {
        const double now = i * CollageWallClock::heartbeat;
        variedWall.tick(CollageWallClock::heartbeat, now);
        flow.tick(CollageWallClock::heartbeat, now);
        scatter.tick(CollageWallClock::heartbeat, now);
    }
    // Eight seconds: two changes each, and one template switch.
    EXPECT_EQ(variedWall.history().batches().size(), 2);
    EXPECT_NE(variedWall.state().variantIndex, 0);
    ASSERT_EQ(flow.history().batches().size(), 2);
    EXPECT_EQ(flow.history().batches().first().size(), 3);
    EXPECT_EQ(scatter.state().drops.size(), 3);
}

TEST(CollageWall, HoldsStillWhenHeldOrJustTouched)
{
    CollageWall held(varied, makePool(20), 0, 1);
    CollageWall touched(varied, makePool(20), 0, 1);
    CollageWall untouched(varied, makePool(20), 0, 1);
    for (int i = 1; i <= 16; ++i) {
        const double now = i * CollageWallClock::heartbeat;
        held.tick(CollageWallClock::heartbeat, now, true);
        touched.tick(CollageWallClock::heartbeat, now);
        untouched.tick(CollageWallClock::heartbeat, now);
        if (now == 3.0)
            touched.noteInteraction(3.2);
    }
    EXPECT_TRUE(held.history().batches().isEmpty());
    // The ticks up to 5.0 fall in the cooldown, so the change due at 4 comes at 6 and the
    // one due at 8 has not come yet.
    EXPECT_EQ(untouched.history().batches().size(), 2);
    EXPECT_EQ(touched.history().batches().size(), 1);
}

TEST(CollageWall, RestoresOnlyAStateOfItsOwnPoolGenerationAndLayout)
{
    const QList<ImageItem> pool = makePool(20);
    CollageWall original(varied, pool, 4, 1);
    original.advance();
    original.reshuffleVariant();
    const CollageWallState captured = original.capture();

    CollageWall same(varied, pool, 4, 99);
    std::vector<Change> changes;
    record(same, changes);
    EXPECT_TRUE(same.restore(captured));
    EXPECT_EQ(same.state(), captured);
    EXPECT_EQ(changes.size(), 1);

    struct Case {
        CollageLayout layout;
        qint64 generation;
    };
    for (const Case &c : {Case {varied, 5}, Case {varied, 3}, Case {CollageLayout::flow, 4}}) {
        CollageWall other(c.layout, pool, c.generation, 99);
        const CollageWallState fresh = other.capture();
        EXPECT_FALSE(other.restore(captured));
        EXPECT_EQ(other.state(), fresh);
    }
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

TEST(CollageWall, FollowersMirrorTheScatterPileWithItsAnimations)
{
    const QList<ImageItem> pool = makePool(30);
    CollageCoordinator coordinator;
    CollageWall leader(CollageLayout::scatter, pool, 0, 1, CollageRole::mirrorLeader, &coordinator);
    CollageWall follower(CollageLayout::scatter, pool, 0, 2, CollageRole::mirrorFollower, &coordinator);
    std::vector<Change> changes;
    record(follower, changes);

    ASSERT_TRUE(leader.dropNext());
    ASSERT_TRUE(leader.dropNext());
    ASSERT_TRUE(leader.raise(leader.state().drops.first().item.id()));
    EXPECT_EQ(follower.state().drops, leader.state().drops);
    EXPECT_EQ(changes,
        std::vector<Change>({
            {CollageMutationKind::scatterDrop, CollageAnimation::easeInOut(0.9)},
            {CollageMutationKind::scatterDrop, CollageAnimation::easeInOut(0.9)},
            {CollageMutationKind::reorderDrop, CollageAnimation::spring(0.45, 0.7)},
        }));
}

TEST(CollageWall, AFollowerNeverChangesByItselfAndCatchesUpWhenItMissedBroadcasts)
{
    const QList<ImageItem> pool = makePool(30);
    CollageCoordinator coordinator;
    CollageWall leader(varied, pool, 0, 1, CollageRole::mirrorLeader, &coordinator);
    CollageWall follower(varied, pool, 0, 2, CollageRole::mirrorFollower, &coordinator);
    CollageWallSettings fast;
    fast.imageChangeInterval = 0.5;
    fast.variedLayoutInterval = 0.5;
    follower.setSettings(fast);
    const CollageWallState before = follower.capture();
    for (int i = 1; i <= 40; ++i)
        follower.tick(CollageWallClock::heartbeat, i * CollageWallClock::heartbeat);
    EXPECT_EQ(follower.state(), before);
    EXPECT_TRUE(follower.history().batches().isEmpty());

    // Running on its own for a while, it misses the leader's changes...
    follower.setRole(CollageRole::independent);
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(leader.advance());
    EXPECT_NE(follower.state().slots, leader.state().slots);
    // ...and, following again, takes the latest at once: no follower had taken it.
    follower.setRole(CollageRole::mirrorFollower);
    EXPECT_EQ(follower.state().slots, leader.state().slots);

    // A wall that becomes leader publishes its wall to the followers at once.
    CollageWall successor(varied, pool, 0, 9, CollageRole::independent, &coordinator);
    successor.setRole(CollageRole::mirrorLeader);
    leader.setRole(CollageRole::independent);
    EXPECT_EQ(follower.state().slots, successor.state().slots);
    successor.setRole(CollageRole::independent);
    ASSERT_TRUE(successor.advance());
    EXPECT_NE(follower.state().slots, successor.state().slots);
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

} // namespace
} // namespace sorvane
