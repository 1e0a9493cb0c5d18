#include "collage/FlowPointerPause.h"
#include "collage/FlowScrollClock.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <vector>

namespace sorvane {
namespace {

using test::FakeTime;

void advanceTo(FakeTime &time, double at)
{
    time.advance(at - time.monotonicSeconds());
}

TEST(FlowPointerPause, MovementPausesScrollingUntilThePointerRests)
{
    struct Case {
        const char *what;
        double pause;
        std::vector<double> moves;
        double probeAt;
        double expected; // offset at 18 points per second
    };
    const Case cases[] = {
        {"during the pause", 0.5, {1.0}, 1.4, 18},
        {"after the pause", 0.5, {1.0}, 3.0, 18 * (1 + 1.5)},
        {"a later movement restarts the wait", 0.5, {1.0, 1.3}, 3.0, 18 * (1 + 1.2)},
        {"pause 0 never stops the scroll", 0, {1.0, 1.3, 2.0}, 3.0, 54},
        {"a negative pause counts as 0", -1, {1.0}, 3.0, 54},
        {"not a number counts as 0.5", std::numeric_limits<double>::quiet_NaN(), {1.0}, 3.0, 45},
        {"held at 5 seconds", 7, {1.0}, 5.9, 18},
        {"held at 5 seconds, then runs", 7, {1.0}, 8.0, 18 + 36},
    };
    for (const Case &c : cases) {
        FakeTime time;
        FlowScrollClock scroll(0);
        FlowPointerPause pause(time, time, scroll, c.pause);
        for (const double at : c.moves) {
            advanceTo(time, at);
            pause.pointerMoved();
        }
        EXPECT_LE(time.pendingTimers(), 1u) << c.what; // a newer movement replaces the wait
        advanceTo(time, c.probeAt);
        EXPECT_NEAR(scroll.offset(time.monotonicSeconds()), c.expected, 1e-9) << c.what;
    }
}

TEST(FlowPointerPause, ResumingLeavesOtherHoldsInPlace)
{
    FakeTime time;
    FlowScrollClock scroll(0);
    FlowPointerPause pause(time, time, scroll, 0.5);
    advanceTo(time, 1);
    pause.pointerMoved();
    scroll.hold(FlowScrollHold::user, time.monotonicSeconds());
    advanceTo(time, 4);
    EXPECT_FALSE(pause.isPausing());
    EXPECT_DOUBLE_EQ(scroll.offset(time.monotonicSeconds()), 18);
}

TEST(FlowPointerPause, EndingThePauseEarly)
{
    enum class End { setZero, stop };
    for (const End end : {End::setZero, End::stop}) {
        FakeTime time;
        FlowScrollClock scroll(0);
        FlowPointerPause pause(time, time, scroll, 2.0);
        advanceTo(time, 1);
        pause.pointerMoved();
        advanceTo(time, 1.2);
        if (end == End::setZero)
            pause.setPauseSeconds(0);
        else
            pause.stop();
        EXPECT_FALSE(pause.isPausing());
        EXPECT_EQ(time.pendingTimers(), 0u);
        EXPECT_NEAR(scroll.offset(2), 18 + 0.8 * 18, 1e-9);
    }
}

TEST(FlowPointerPause, GoingAwayCancelsTheResumeTask)
{
    FakeTime time;
    FlowScrollClock scroll(0);
    {
        FlowPointerPause pause(time, time, scroll, 0.5);
        pause.pointerMoved();
        EXPECT_EQ(time.pendingTimers(), 1u);
    }
    EXPECT_EQ(time.pendingTimers(), 0u);
}

} // namespace
} // namespace sorvane
