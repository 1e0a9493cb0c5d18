// The Flow wall's pieces: geometry, seeding and scrolling strips.
#include "collage/FlowColumnBuilder.h"
#include "collage/FlowGeometry.h"
#include "collage/FlowPointerPause.h"
#include "collage/FlowScrollClock.h"
#include "collage/FlowScroller.h"
#include "collage/FlowSeeder.h"
#include "collage/FlowTuning.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <tuple>
#include <vector>

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();
constexpr FlowOrientation vertical = FlowOrientation::vertical;
constexpr FlowOrientation horizontal = FlowOrientation::horizontal;

TEST(FlowGeometry, DegenerateSizesGiveEmptyStripsNotNonsense)
{
    EXPECT_DOUBLE_EQ(FlowGeometry::stripThickness(10, 2), 0); // less than the spacing
    EXPECT_DOUBLE_EQ(FlowGeometry::stripThickness(1920, 0), 0);
    EXPECT_DOUBLE_EQ(FlowGeometry::stripLength(std::vector<double> {100, 200}, 0, FlowTuning::flowSpacing), 0);
    EXPECT_EQ(FlowGeometry::copies(0, 1080), 1);
    EXPECT_DOUBLE_EQ(FlowGeometry::wrap(5, 0), 0);
    EXPECT_DOUBLE_EQ(FlowGeometry::wrap(-1e-17, 10), 0); // would round up to the cycle itself
    // Tiles are as long as their aspect says, held at 0.05; an unknown aspect is square.
    EXPECT_DOUBLE_EQ(FlowGeometry::tileLength(0.01, 300, vertical), 6000);
    EXPECT_DOUBLE_EQ(FlowGeometry::tileLength(-2, 300, horizontal), 15);
    EXPECT_DOUBLE_EQ(FlowGeometry::tileLength(inf, 300, horizontal), 300);
    // Tile counts that differ: the anchor stays.
    EXPECT_DOUBLE_EQ(FlowGeometry::trackAnchor(
                         std::vector<double> {100, 200}, std::vector<double> {150}, 320, 7, FlowTuning::flowSpacing),
        7);
}

FlowLayoutInput layout(double width, double height, qint64 adjustment = 0, FlowOrientation orientation = vertical,
    FlowWeightMode mode = FlowWeightMode::proportional)
{
    return FlowLayoutInput {width, height, adjustment, orientation, mode};
}

TEST(FlowSeeder, SlotCountsAndOutcomes)
{
    struct Case {
        const char *what;
        FlowLayoutInput input;
        qsizetype pool;
        FlowSeedOutcome outcome;
        int columns;
        int tilesPerStrip; // when seeded
    };
    const Case cases[] = {
        {"full-HD columns", layout(1920, 1080), 10, FlowSeedOutcome::seeded, 5, 8},
        {"full-HD rows", layout(1920, 1080, 0, horizontal), 10, FlowSeedOutcome::seeded, 3, 10},
        {"two wide columns", layout(1920, 1080, -6), 10, FlowSeedOutcome::seeded, 2, 6},
        {"endless width", layout(inf, 1080), 10, FlowSeedOutcome::emptyContainer, 8, 0},
        {"no items", layout(1920, 1080), 0, FlowSeedOutcome::emptyPool, 5, 0},
        {"absurd height", layout(1000, 1e13), 10, FlowSeedOutcome::tooManySlots, 3, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const FlowSeedResult result = FlowSeeder::seed(c.input, c.pool);
        EXPECT_EQ(result.outcome, c.outcome);
        EXPECT_EQ(result.columns, c.columns);
        ASSERT_EQ(result.seed.has_value(), c.outcome == FlowSeedOutcome::seeded);
        if (!result.seed)
            continue;
        const FlowSeed &seed = *result.seed;
        EXPECT_EQ(seed.tilesPerStrip, c.tilesPerStrip);
        EXPECT_EQ(seed.flowColumnOf.size(), qsizetype(c.columns) * c.tilesPerStrip);
        EXPECT_EQ(std::tuple(seed.flowSeededWidth, seed.flowSeededHeight, seed.flowSeededColumns, seed.flowOrientation),
            std::tuple(c.input.width, c.input.height, c.columns, c.input.orientation));
        for (int column = 0; column < c.columns; ++column)
            EXPECT_EQ(seed.flowColumnOf.count(column), c.tilesPerStrip) << column;
    }
}

TEST(FlowSeeder, WeightedFillsTheShortestStripThatHasRoom)
{
    // Two strips of 391 points and 5 tiles each. A tile of aspect `tall` is 782 points
    // along the strip, one of aspect `wide` 195.5; in rows the two swap.
    struct Case {
        FlowOrientation orientation;
        double tall;
        double wide;
    };
    const Case cases[] = {{vertical, 0.5, 2}, {horizontal, 2, 0.5}};
    for (const Case &c : cases) {
        SCOPED_TRACE(int(c.orientation));
        const double t = c.tall;
        const double w = c.wide;
        const std::vector<double> aspects {t, w, w, w, w, w, w, t, t, w};
        const FlowLayoutInput input = c.orientation == vertical
            ? layout(800, 100, 0, vertical, FlowWeightMode::weighted)
            : layout(100, 800, 0, horizontal, FlowWeightMode::weighted);
        std::vector<int> asked;
        const FlowSeedResult result = FlowSeeder::seed(input, 3, [&](int slot) {
            asked.push_back(slot);
            return aspects[size_t(slot)];
        });
        ASSERT_TRUE(result.seed);
        // Four short tiles join strip 1 while strip 0 holds one long one; once strip 1 is
        // full the rest must go to strip 0.
        EXPECT_EQ(result.seed->flowColumnOf, QList<int>({0, 1, 1, 1, 1, 0, 1, 0, 0, 0}));
        EXPECT_EQ(asked, std::vector<int>({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
}

FlowScrollColumn strip(int index, std::vector<double> aspects, double thickness = 300)
{
    FlowScrollColumn column;
    column.columnIndex = index;
    for (size_t k = 0; k < aspects.size(); ++k) {
        column.slotIndices.push_back(int(k));
        column.itemIds.push_back(QUuid::createUuid());
    }
    column.aspects = std::move(aspects);
    column.columnWidth = thickness;
    return column;
}

std::vector<FlowScrollColumn> strips(int count, const std::vector<double> &aspects)
{
    std::vector<FlowScrollColumn> columns;
    for (int i = 0; i < count; ++i)
        columns.push_back(strip(i, aspects));
    return columns;
}

TEST(FlowScroller, ChangingDirectionsDoesNotJump)
{
    FlowScroller scroller(true, false);
    scroller.setColumns(strips(4, {1, 0.75, 1.5, 1}), 0);
    std::vector<double> before;
    std::vector<double> after;
    struct Step {
        bool bidirectional;
        bool reversed;
        double offset;
    };
    const Step steps[] = {{false, false, 500}, {false, true, 700}, {true, true, 1234.5}, {true, false, 2000}};
    for (const Step &step : steps) {
        scroller.positions(step.offset, before);
        scroller.setDirections(step.bidirectional, step.reversed, step.offset);
        scroller.positions(step.offset, after);
        for (size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(after[i], before[i], 1e-9) << i;
            const int direction = FlowGeometry::scrollDirection(int(i), step.bidirectional, step.reversed);
            EXPECT_EQ(scroller.direction(i), direction);
            // And from here on it moves the new way.
            const double cycle = scroller.columns()[i].cycleLength();
            EXPECT_NEAR(
                scroller.position(i, step.offset + 10), FlowGeometry::wrap(after[i] + direction * 10, cycle), 1e-9);
        }
    }
}

// Replacing the tile just above the viewer's keeps the viewer's tile, and every one after it,
// where it stands on screen; strip 0 runs forwards, strip 1 backwards, the other strip stays.
TEST(FlowScroller, ReplacingATileAboveTheViewerKeepsTheViewersTileInPlace)
{
    const std::vector<double> aspects {1, 0.75, 1.5, 1, 0.6, 1.2};
    for (const double offset : {450.0, 1234.5, -777.0, 123456.0}) {
        for (size_t s = 0; s < 2; ++s) {
            SCOPED_TRACE(testing::Message() << "offset " << offset << " strip " << s);
            FlowScroller scroller;
            scroller.setColumns(strips(2, aspects), 0);
            const FlowScrollColumn old = scroller.columns()[s];
            const double oldPosition = scroller.position(s, offset);
            const double other = scroller.position(1 - s, offset);
            size_t k = 0; // the tile at the viewer's leading edge
            while (k + 1 < aspects.size() && old.tileStart(k + 1) <= oldPosition)
                ++k;
            ASSERT_GT(k, 0u);
            std::vector<FlowScrollColumn> changed = scroller.columns();
            changed[s].aspects[k - 1] = 0.05;
            changed[s].itemIds[k - 1] = QUuid::createUuid();
            scroller.setColumns(changed, offset);
            for (size_t t = k; t < aspects.size(); ++t)
                EXPECT_NEAR(scroller.columns()[s].tileStart(t) - scroller.position(s, offset),
                    old.tileStart(t) - oldPosition, 1e-6)
                    << t;
            EXPECT_DOUBLE_EQ(scroller.position(1 - s, offset), other);
        }
    }
}

TEST(FlowScrollClock, ANewSpeedCarriesOnFromTheCurrentOffset)
{
    FlowScrollClock clock(100); // shown at t = 100, 18 points a second
    clock.setSpeed(64, 110);
    EXPECT_DOUBLE_EQ(clock.offset(112), 180 + 128);
    EXPECT_DOUBLE_EQ(clock.flowScrollBase(), 180);
    EXPECT_DOUBLE_EQ(clock.flowScrollEpoch(), 110);
    EXPECT_DOUBLE_EQ(clock.flowScrollLastSpeed(), 64);
    // A frame stamped just before the last change must not show an earlier offset.
    EXPECT_DOUBLE_EQ(clock.offset(109.5), 180);
    clock.setSpeed(nan, 112); // not a number: the default speed
    EXPECT_DOUBLE_EQ(clock.offset(113), 180 + 128 + 18);
}

TEST(FlowPointerPause, EndsEarlyWhenSwitchedOffOrStopped)
{
    for (const bool switchOff : {true, false}) {
        test::FakeTime time;
        FlowScrollClock scroll(0);
        // Not a number: the default pause.
        FlowPointerPause pause(time, time, scroll, std::numeric_limits<double>::quiet_NaN());
        time.advance(1);
        pause.pointerMoved();
        EXPECT_TRUE(pause.isPausing());
        time.advance(0.2);
        if (switchOff)
            pause.setPauseSeconds(0);
        else
            pause.stop();
        EXPECT_FALSE(pause.isPausing());
        EXPECT_EQ(time.pendingTimers(), 0u);
        EXPECT_NEAR(scroll.offset(2), 18 + 0.8 * 18, 1e-9) << "it runs on from where it stood";
    }
    // A pause of nothing never stops the scroll.
    test::FakeTime time;
    FlowScrollClock scroll(0);
    FlowPointerPause never(time, time, scroll, 0);
    never.pointerMoved();
    EXPECT_FALSE(never.isPausing());
}

} // namespace
} // namespace sorvane
