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

TEST(CollageWallClock, StaggeredSwapsSpreadEvenlyOverTheInterval)
{
    CollageWallSettings settings;
    settings.flowTilesPerChange = 4;
    settings.imageChangeInterval = 4.0;
    CollageWallClock clock;
    std::vector<Event> expected;
    for (double at = 1; at <= 8; ++at)
        expected.push_back({at, {1, 1, false}});
    EXPECT_EQ(run(clock, settings, CollageLayout::flow, 8), expected);

    // More swaps than ticks in an interval: several fall due on one tick.
    settings.flowTilesPerChange = 5;
    settings.imageChangeInterval = 1.0;
    CollageWallClock busy;
    EXPECT_EQ(
        run(busy, settings, CollageLayout::flow, 1), (std::vector<Event> {{0.5, {2, 1, false}}, {1.0, {3, 1, false}}}));
}

TEST(CollageWallClock, AnInteractionHoldsChangesForTwoSeconds)
{
    CollageWallSettings settings;
    CollageWallClock clock;
    // 3 s accumulate, then the user clicks at 3.2: the ticks up to 5.0 do not count,
    // so the change due at 4 comes at 6.
    run(clock, settings, CollageLayout::scatter, 3);
    EXPECT_DOUBLE_EQ(clock.imageClock(), 3.0);
    clock.noteInteraction(3.2);
    EXPECT_EQ(run(clock, settings, CollageLayout::scatter, 7, 3), (std::vector<Event> {{6, {1, 1, false}}}));

    // An earlier interaction reported late does not move the latest back.
    clock.noteInteraction(20.0);
    clock.noteInteraction(10.0);
    EXPECT_DOUBLE_EQ(clock.lastInteractionAt(), 20.0);
    const double before = clock.imageClock();
    EXPECT_EQ(clock.advance(0.5, 21.9, settings, CollageLayout::scatter), CollageWallClock::Due {});
    EXPECT_DOUBLE_EQ(clock.imageClock(), before);
    clock.advance(0.5, 22.0, settings, CollageLayout::scatter);
    EXPECT_DOUBLE_EQ(clock.imageClock(), before + 0.5);
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
