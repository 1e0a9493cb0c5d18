#include "collage/CollageWallClock.h"

#include <gtest/gtest.h>

#include <vector>

namespace sorvane {
namespace {

constexpr CollageLayout varied = CollageLayout::collage;

struct Event {
    double at;
    CollageWallClock::Due due;
    bool operator==(const Event &) const = default;
};

void PrintTo(const Event &e, std::ostream *os)
{
    *os << "{" << e.at << ": " << e.due.changes << "x" << e.due.slotsPerChange << (e.due.reshuffle ? " reshuffle" : "")
        << "}";
}

// Runs the heartbeat from time 0 to `until` and lists the ticks that called for something.
std::vector<Event> run(CollageWallClock &clock, const CollageWallSettings &settings, CollageLayout layout, double until,
    double start = 0.0)
{
    std::vector<Event> events;
    for (int i = 1; start + i * CollageWallClock::heartbeat <= until + 1e-9; ++i) {
        const double now = start + i * CollageWallClock::heartbeat;
        const CollageWallClock::Due due = clock.advance(CollageWallClock::heartbeat, now, settings, layout);
        if (due != CollageWallClock::Due {})
            events.push_back({now, due});
    }
    return events;
}

TEST(CollageWallClock, ChangesEveryIntervalWithTheLayoutsShare)
{
    CollageWallSettings unstaggered;
    unstaggered.flowStaggerSwaps = false;
    unstaggered.flowTilesPerChange = 3;
    CollageWallSettings belowOne = unstaggered;
    belowOne.flowTilesPerChange = -2;
    CollageWallSettings staggerOfOne;
    staggerOfOne.flowTilesPerChange = 1;
    CollageWallSettings slowVaried;
    slowVaried.imageChangeInterval = 10.0;
    slowVaried.variedLayoutInterval = 15.0;
    CollageWallSettings noShuffle = slowVaried;
    noShuffle.shuffleVariedLayout = false;

    struct Case {
        const char *name;
        CollageWallSettings settings;
        CollageLayout layout;
        double until;
        std::vector<Event> expected;
    };
    const Case cases[] = {
        {"scatter", {}, CollageLayout::scatter, 12, {{4, {1, 1, false}}, {8, {1, 1, false}}, {12, {1, 1, false}}}},
        {"flow at once", unstaggered, CollageLayout::flow, 8, {{4, {1, 3, false}}, {8, {1, 3, false}}}},
        {"flow below one", belowOne, CollageLayout::flow, 4, {{4, {1, 1, false}}}},
        // Two tiles per change by default, spread over the interval.
        {"flow staggered", {}, CollageLayout::flow, 8,
            {{2, {1, 1, false}}, {4, {1, 1, false}}, {6, {1, 1, false}}, {8, {1, 1, false}}}},
        {"flow stagger of one", staggerOfOne, CollageLayout::flow, 8, {{4, {1, 1, false}}, {8, {1, 1, false}}}},
        {"varied reshuffles", slowVaried, varied, 30,
            {{10, {1, 1, false}}, {15, {0, 0, true}}, {20, {1, 1, false}}, {30, {1, 1, true}}}},
        {"varied without shuffle", noShuffle, varied, 30,
            {{10, {1, 1, false}}, {20, {1, 1, false}}, {30, {1, 1, false}}}},
        {"flow never reshuffles", slowVaried, CollageLayout::flow, 30,
            {{5, {1, 1, false}}, {10, {1, 1, false}}, {15, {1, 1, false}}, {20, {1, 1, false}}, {25, {1, 1, false}},
                {30, {1, 1, false}}}},
    };
    for (const Case &c : cases) {
        CollageWallClock clock;
        EXPECT_EQ(run(clock, c.settings, c.layout, c.until), c.expected) << c.name;
    }
}

TEST(CollageWallClock, AZeroIntervalChangesOncePerTickAndNotANumberNever)
{
    CollageWallSettings zero;
    zero.imageChangeInterval = 0.0;
    CollageWallClock clock;
    EXPECT_EQ(
        run(clock, zero, CollageLayout::scatter, 1), (std::vector<Event> {{0.5, {1, 1, false}}, {1.0, {1, 1, false}}}));

    CollageWallSettings nan;
    nan.imageChangeInterval = std::numeric_limits<double>::quiet_NaN();
    CollageWallClock never;
    EXPECT_TRUE(run(never, nan, CollageLayout::flow, 20).empty());
}

} // namespace
} // namespace sorvane
