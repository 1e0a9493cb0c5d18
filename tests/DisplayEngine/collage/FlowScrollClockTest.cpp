#include "collage/FlowScrollClock.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace sorvane {
namespace {

TEST(FlowScrollClock, SpeedChangeContinuesFromTheCurrentOffset)
{
    FlowScrollClock clock(100); // shown at t = 100
    EXPECT_DOUBLE_EQ(clock.offset(100), 0);
    EXPECT_DOUBLE_EQ(clock.offset(110), 180);
    clock.setSpeed(64, 110);
    EXPECT_DOUBLE_EQ(clock.offset(110), 180);
    EXPECT_DOUBLE_EQ(clock.offset(112), 180 + 128);
    EXPECT_DOUBLE_EQ(clock.flowScrollBase(), 180);
    EXPECT_DOUBLE_EQ(clock.flowScrollEpoch(), 110);
    EXPECT_DOUBLE_EQ(clock.flowScrollLastSpeed(), 64);
    clock.setSpeed(18, 115);
    EXPECT_DOUBLE_EQ(clock.offset(116), 180 + 5 * 64 + 18);
}

TEST(FlowScrollClock, SpeedsOutsideTheRangeAreHeld)
{
    struct Case {
        double speed;
        double expected;
    };
    const Case cases[] = {
        {36, 36},
        {100, 72},
        {1, 6},
        {-5, 6},
        {std::numeric_limits<double>::quiet_NaN(), 18},
    };
    for (const Case &c : cases) {
        FlowScrollClock started(0, c.speed);
        EXPECT_DOUBLE_EQ(started.offset(1), c.expected) << c.speed;
        FlowScrollClock changed(0);
        changed.setSpeed(c.speed, 1);
        EXPECT_DOUBLE_EQ(changed.offset(2), 18 + c.expected) << c.speed;
    }
}

TEST(FlowScrollClock, HoldsFreezeTheOffsetAndRunningResumesFromIt)
{
    enum class Do { hold, release, speed };
    struct Event {
        double at;
        Do action;
        FlowScrollHold reason = FlowScrollHold::user;
        double speed = 0;
    };
    struct Case {
        const char *what;
        std::vector<Event> events;
        double probeAt;
        double expected;
    };
    const auto user = FlowScrollHold::user;
    const auto pointer = FlowScrollHold::pointer;
    const auto wall = FlowScrollHold::wall;
    const Case cases[] = {
        {"paused from 5 to 8", {{5, Do::hold}, {8, Do::release}}, 10, 90 + 36},
        {"still paused", {{5, Do::hold}}, 1000, 90},
        {"one of two reasons ends", {{5, Do::hold, pointer}, {6, Do::hold, wall}, {7, Do::release, pointer}}, 10, 90},
        {"both reasons end",
            {{5, Do::hold, pointer}, {6, Do::hold, wall}, {7, Do::release, pointer}, {9, Do::release, wall}}, 10, 108},
        {"speed change while paused", {{5, Do::hold}, {6, Do::speed, user, 36}, {7, Do::release}}, 8, 90 + 36},
        {"holding twice for one reason", {{5, Do::hold}, {6, Do::hold}, {7, Do::release}}, 8, 108},
        {"release without a hold", {{3, Do::release}}, 4, 72},
    };
    for (const Case &c : cases) {
        FlowScrollClock clock(0);
        for (const Event &event : c.events) {
            if (event.action == Do::hold)
                clock.hold(event.reason, event.at);
            else if (event.action == Do::release)
                clock.release(event.reason, event.at);
            else
                clock.setSpeed(event.speed, event.at);
        }
        EXPECT_DOUBLE_EQ(clock.offset(c.probeAt), c.expected) << c.what;
    }
}

TEST(FlowScrollClock, NeverRunsBackwards)
{
    FlowScrollClock clock(10);
    clock.setSpeed(64, 20);
    // A frame stamped just before the last change must not show an earlier offset.
    EXPECT_DOUBLE_EQ(clock.offset(19.5), 180);
}

} // namespace
} // namespace sorvane
