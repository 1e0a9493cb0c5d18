#include "CollageTestItems.h"

#include "collage/CollageAnimation.h"
#include "collage/CollageCoordinator.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using collagetest::makePool;

struct Signals {
    int mirror = 0;
    int seq = 0;
};

void count(CollageCoordinator &coordinator, Signals &seen)
{
    QObject::connect(&coordinator, &CollageCoordinator::mirrorChanged, [&seen] { ++seen.mirror; });
    QObject::connect(&coordinator, &CollageCoordinator::seqChanged, [&seen] { ++seen.seq; });
}

TEST(CollageCoordinator, EachBroadcastCarriesTheNextSequenceNumberAndTheWholeContent)
{
    CollageCoordinator coordinator;
    Signals seen;
    count(coordinator, seen);
    EXPECT_EQ(coordinator.seq(), 0);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);

    const QList<ImageItem> items = makePool(3);
    const QList<QUuid> slotItems {items[0].id(), items[1].id()};
    const QList<CollageDrop> drops {{items[2], QPointF(0.3, 0.4), -5.0, 0.9}};

    coordinator.broadcast(slotItems, drops, 2, CollageMutationKind::reshuffleVariant);
    const CollageBroadcast expected {slotItems, drops, 2, CollageMutationKind::reshuffleVariant, 1};
    EXPECT_EQ(coordinator.mirror(), expected);
    EXPECT_EQ(coordinator.seq(), 1);

    coordinator.broadcast({}, {}, 0, CollageMutationKind::scatterDrop);
    EXPECT_EQ(coordinator.seq(), 2);
    ASSERT_TRUE(coordinator.mirror());
    EXPECT_EQ(coordinator.mirror()->seq, 2);
    EXPECT_EQ(coordinator.mirror()->kind, CollageMutationKind::scatterDrop);
    EXPECT_TRUE(coordinator.mirror()->slots.isEmpty());

    EXPECT_EQ(seen.seq, 2);
    EXPECT_EQ(seen.mirror, 2);
}

TEST(CollageCoordinator, PublishesTheMirrorAsAProperty)
{
    CollageCoordinator coordinator;
    coordinator.broadcast({}, {}, 3, CollageMutationKind::advanceSlot);
    const QVariant mirror = coordinator.property("mirror");
    ASSERT_TRUE(mirror.isValid());
    const auto value = mirror.value<std::optional<CollageBroadcast>>();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->variantIndex, 3);
    EXPECT_EQ(coordinator.property("seq").toLongLong(), 1);
}

TEST(CollageCoordinator, EveryFollowerTakesEachBroadcastOnceThenItIsCleared)
{
    CollageCoordinator coordinator;
    Signals seen;
    count(coordinator, seen);
    const auto a = coordinator.attachFollower();
    const auto b = coordinator.attachFollower();
    EXPECT_NE(a, b);

    coordinator.broadcast({}, {}, 1, CollageMutationKind::advanceSlot);
    EXPECT_EQ(coordinator.consume(a)->seq, 1);
    EXPECT_EQ(coordinator.consume(a), std::nullopt); // once only
    EXPECT_TRUE(coordinator.mirror()); // b has not taken it yet
    EXPECT_EQ(coordinator.consume(b)->seq, 1);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);
    EXPECT_EQ(seen.mirror, 2); // published, then cleared
    EXPECT_EQ(coordinator.seq(), 1); // clearing keeps the sequence

    // A follower that missed broadcasts gets the latest one.
    coordinator.broadcast({}, {}, 2, CollageMutationKind::advanceSlot);
    coordinator.broadcast({}, {}, 3, CollageMutationKind::advanceSlot);
    EXPECT_EQ(coordinator.consume(b)->variantIndex, 3);
    EXPECT_EQ(coordinator.consume(a)->seq, 3);
    EXPECT_EQ(coordinator.mirror(), std::nullopt);

    EXPECT_EQ(coordinator.consume(12345), std::nullopt);
}

TEST(CollageCoordinator, FollowersThatJoinOrLeaveDoNotStrandABroadcast)
{
    CollageCoordinator coordinator;
    // Published before any follower: it waits for the first one.
    coordinator.broadcast({}, {}, 1, CollageMutationKind::advanceSlot);
    const auto late = coordinator.attachFollower();
    EXPECT_EQ(coordinator.consume(late)->seq, 1);
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

TEST(CollageAnimation, FollowersAnimateByTheKindOfChange)
{
    using Curve = CollageAnimation::Curve;
    struct Case {
        CollageMutationKind kind;
        CollageAnimation expected;
    };
    const Case cases[] = {
        {CollageMutationKind::advanceSlot, {Curve::none, 0.0, 0.0, 0.0}},
        {CollageMutationKind::reshuffleVariant, {Curve::easeInOut, 0.7, 0.0, 0.0}},
        {CollageMutationKind::scatterDrop, {Curve::easeInOut, 0.9, 0.0, 0.0}},
        {CollageMutationKind::reorderDrop, {Curve::spring, 0.0, 0.45, 0.7}},
        {static_cast<CollageMutationKind>(17), {Curve::easeInOut, 0.2, 0.0, 0.0}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(CollageAnimation::mirrored(c.kind), c.expected) << int(c.kind);
    EXPECT_EQ(CollageAnimation::scatterDrop(), (CollageAnimation {Curve::spring, 0.0, 0.45, 0.7}));
}

} // namespace
} // namespace sorvane
