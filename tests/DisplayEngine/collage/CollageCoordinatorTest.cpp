#include "collage/CollageCoordinator.h"
#include "collage/CollageAnimation.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

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
