#include "collage/FlowGeometry.h"
#include "collage/FlowTuning.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr FlowOrientation vertical = FlowOrientation::vertical;
constexpr FlowOrientation horizontal = FlowOrientation::horizontal;

TEST(FlowGeometry, ColumnCountRoundsHalvesAwayAdjustsAndClamps)
{
    struct Case {
        double width;
        qint64 adjustment;
        int expected;
    };
    const Case cases[] = {
        {0, 0, 2},
        {-100, 3, 2},
        {nan, 0, 2},
        {1000, 0, 3}, // 2.5
        {600, 0, 2}, // 1.5
        {1400, 0, 4}, // 3.5
        {1920, 0, 5}, // 4.8
        {3000, 0, 8}, // 7.5
        {5000, 0, 8},
        {1e300, 0, 8},
        {300, -6, 2},
        {1000, 2, 5},
        {1000, -1, 2},
        // An adjustment beyond ±6 is held there before it counts.
        {4000, -40, 4},
        {400, 40, 7},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(FlowGeometry::effectiveFlowColumnCount(c.width, c.adjustment, FlowTuning::flowTargetColumnWidth),
            c.expected)
            << c.width << " " << c.adjustment;
    }
}

TEST(FlowGeometry, ColumnCountUsesTheExtentAcrossTheStrips)
{
    EXPECT_EQ(FlowGeometry::effectiveFlowColumnCount(1920, 1080, 0, vertical), 5);
    EXPECT_EQ(FlowGeometry::effectiveFlowColumnCount(1920, 1080, 0, horizontal), 3); // 2.7
    EXPECT_EQ(FlowGeometry::effectiveFlowColumnCount(1920, 0, 0, horizontal), 2);
}

TEST(FlowGeometry, StripThickness)
{
    struct Case {
        double crossExtent;
        int count;
        double expected;
    };
    const Case cases[] = {
        {1920, 5, 376.8},
        {1080, 3, 352},
        {20, 2, 1},
        {10, 2, 0}, // less than the spacing
        {1920, 0, 0},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(FlowGeometry::stripThickness(c.crossExtent, c.count), c.expected) << c.crossExtent;
}

TEST(FlowGeometry, TilesPerStrip)
{
    struct Case {
        double mainExtent;
        double thickness;
        FlowOrientation orientation;
        std::optional<int> expected;
    };
    const Case cases[] = {
        {1080, 376.8, vertical, 8}, // estimate 301.44
        {1080, 376.8, horizontal, 7}, // no fill factor across
        {1920, 352, horizontal, 10},
        {800, 400, horizontal, 6}, // an exact fit adds nothing
        {100, 0.5, vertical, 104}, // the estimate is never below 1 point
        {0, 300, vertical, 4},
        {1e12, 1, vertical, std::nullopt},
    };
    for (const Case &c : cases)
        EXPECT_EQ(FlowGeometry::tilesPerStrip(c.mainExtent, c.thickness, c.orientation), c.expected) << c.mainExtent;
}

TEST(FlowGeometry, TileLengthFollowsAspectAndOrientation)
{
    struct Case {
        double aspect;
        FlowOrientation orientation;
        double expected;
    };
    const Case cases[] = {
        {1.5, vertical, 200},
        {1.5, horizontal, 450},
        {0.01, vertical, 6000}, // held at 0.05
        {0, vertical, 6000},
        {-2, horizontal, 15},
        {nan, vertical, 300}, // unknown: square
        {inf, horizontal, 300},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(FlowGeometry::tileLength(c.aspect, 300, c.orientation), c.expected) << c.aspect;
}

TEST(FlowGeometry, StripLength)
{
    struct Case {
        std::vector<double> tiles;
        double thickness;
        double expected;
    };
    const Case cases[] = {
        {{100, 200, 50}, 300, 362},
        {{100}, 300, 100},
        {{}, 300, 0},
        {{100, 200}, 0, 0},
    };
    for (const Case &c : cases)
        EXPECT_DOUBLE_EQ(FlowGeometry::stripLength(c.tiles, c.thickness, FlowTuning::flowSpacing), c.expected);
}

TEST(FlowGeometry, CopiesCoverTheScreenFromAnyPhase)
{
    struct Case {
        double cycle;
        double mainExtent;
        int expected;
    };
    const Case cases[] = {
        {500, 1080, 4},
        {1080, 1080, 2},
        {3000, 1080, 2},
        {0, 1080, 1},
        {500, 0, 1},
    };
    for (const Case &c : cases) {
        const int copies = FlowGeometry::copies(c.cycle, c.mainExtent);
        EXPECT_EQ(copies, c.expected) << c.cycle << " " << c.mainExtent;
        if (c.cycle > 0 && c.mainExtent > 0) {
            // Standing anywhere in the first cycle, the screen still ends inside the copies.
            EXPECT_GE(copies * c.cycle, c.cycle + c.mainExtent);
            EXPECT_LT((copies - 1) * c.cycle, c.cycle + c.mainExtent);
        }
    }
}

TEST(FlowGeometry, ScrollDirections)
{
    struct Case {
        bool bidirectional;
        bool reversed;
        std::vector<int> expected;
    };
    const Case cases[] = {
        {true, false, {1, -1, 1, -1, 1, -1, 1, -1}},
        {false, false, {1, 1, 1, 1, 1, 1, 1, 1}},
        {true, true, {-1, 1, -1, 1, -1, 1, -1, 1}},
        {false, true, {-1, -1, -1, -1, -1, -1, -1, -1}},
    };
    for (const Case &c : cases) {
        std::vector<int> directions;
        for (int strip = 0; strip < 8; ++strip)
            directions.push_back(FlowGeometry::scrollDirection(strip, c.bidirectional, c.reversed));
        EXPECT_EQ(directions, c.expected) << c.bidirectional << c.reversed;
    }
}

TEST(FlowGeometry, TrackAnchor)
{
    // Old cycle: 100 + 200 + 300 + 3 × 6 = 618; tile 2 starts at 312.
    const std::vector<double> before {100, 200, 300};
    struct Case {
        const char *what;
        std::vector<double> after;
        double travel;
        double anchor;
        double expected;
    };
    const Case cases[] = {
        // Phase 320 lies 8 into tile 2, which now starts at 156 + 206 = 362.
        {"tile above grows", {150, 200, 300}, 320, 0, 320 - (8 + 362)},
        {"same, a whole cycle on", {150, 200, 300}, 320 + 2 * 618, 0, 320 + 2 * 618 - 370},
        {"same, a cycle back", {150, 200, 300}, 320 - 618, 0, 320 - 618 - 370},
        {"same, from an earlier anchor", {150, 200, 300}, 360, 40, 360 - 370},
        {"tile after the viewer changes", {100, 200, 50}, 150, 0, 0},
        {"viewer in the gap after tile 0", {180, 200, 300}, 103, 0, 0},
        {"tile counts differ", {150, 200}, 320, 7, 7},
        {"no tiles", {}, 320, 7, 7},
    };
    for (const Case &c : cases) {
        EXPECT_DOUBLE_EQ(
            FlowGeometry::trackAnchor(before, c.after, c.travel, c.anchor, FlowTuning::flowSpacing), c.expected)
            << c.what;
    }
    EXPECT_DOUBLE_EQ(FlowGeometry::trackAnchor({}, {}, 320, 7, FlowTuning::flowSpacing), 7);
}

TEST(FlowGeometry, WrapStaysInsideTheCycle)
{
    struct Case {
        double value;
        double cycle;
        double expected;
    };
    const Case cases[] = {
        {25, 10, 5}, {-1, 10, 9}, {-30, 10, 0}, {5, 0, 0}, {5, -10, 0},
        {-1e-17, 10, 0}, // would round up to the cycle itself
    };
    for (const Case &c : cases) {
        const double wrapped = FlowGeometry::wrap(c.value, c.cycle);
        EXPECT_DOUBLE_EQ(wrapped, c.expected) << c.value;
        EXPECT_GE(wrapped, 0);
    }
}

} // namespace
} // namespace sorvane
