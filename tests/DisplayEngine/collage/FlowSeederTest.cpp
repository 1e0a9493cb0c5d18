#include "collage/FlowSeeder.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace sorvane {
namespace {

constexpr FlowOrientation vertical = FlowOrientation::vertical;
constexpr FlowOrientation horizontal = FlowOrientation::horizontal;

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
        {"one item is enough", layout(1920, 1080), 1, FlowSeedOutcome::seeded, 5, 8},
        {"no width", layout(0, 1080), 10, FlowSeedOutcome::emptyContainer, 2, 0},
        {"no height", layout(1920, 0), 10, FlowSeedOutcome::emptyContainer, 5, 0},
        {"negative size", layout(-5, -5), 10, FlowSeedOutcome::emptyContainer, 2, 0},
        {"endless width", layout(std::numeric_limits<double>::infinity(), 1080), 10, FlowSeedOutcome::emptyContainer, 8,
            0},
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
        EXPECT_EQ(seed.flowSeededWidth, c.input.width);
        EXPECT_EQ(seed.flowSeededHeight, c.input.height);
        EXPECT_EQ(seed.flowSeededColumns, c.columns);
        EXPECT_EQ(seed.flowOrientation, c.input.orientation);
        for (int column = 0; column < c.columns; ++column)
            EXPECT_EQ(seed.flowColumnOf.count(column), c.tilesPerStrip) << column;
    }
}

TEST(FlowSeeder, ProportionalDealsSlotsInTurn)
{
    const FlowSeedResult result = FlowSeeder::seed(layout(1200, 300), 5); // 3 columns of 5 tiles
    ASSERT_TRUE(result.seed);
    EXPECT_EQ(result.seed->flowColumnOf, QList<int>({0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2}));
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

TEST(FlowSeeder, WeightedWithoutMeasurementsMatchesProportional)
{
    const FlowSeedResult weighted = FlowSeeder::seed(layout(1920, 1080, 0, vertical, FlowWeightMode::weighted), 10);
    const FlowSeedResult proportional = FlowSeeder::seed(layout(1920, 1080), 10);
    ASSERT_TRUE(weighted.seed && proportional.seed);
    EXPECT_EQ(weighted.seed->flowColumnOf, proportional.seed->flowColumnOf);
}

TEST(FlowSeeder, ReseedsWhenSizeStripCountOrOrientationChanges)
{
    struct Case {
        const char *what;
        FlowLayoutInput input;
        bool expected;
    };
    // Seeded for 3000 × 1080 in columns: 8 strips.
    const Case cases[] = {
        {"unchanged", layout(3000, 1080), false},
        {"wider", layout(3001, 1080), true},
        {"taller", layout(3000, 1200), true},
        {"fewer strips", layout(3000, 1080, -1), true},
        {"adjustment past the maximum keeps 8", layout(3000, 1080, 1), false},
        {"rows", layout(3000, 1080, 0, horizontal), true},
        {"weighting alone", layout(3000, 1080, 0, vertical, FlowWeightMode::weighted), false},
    };
    for (const Case &c : cases)
        EXPECT_EQ(FlowSeeder::needsReseed(3000, 1080, 8, vertical, c.input), c.expected) << c.what;
    // A square wall keeps its size and strip count when it turns to rows.
    EXPECT_TRUE(FlowSeeder::needsReseed(1000, 1000, 3, vertical, layout(1000, 1000, 0, horizontal)));
    EXPECT_FALSE(FlowSeeder::needsReseed(1000, 1000, 3, horizontal, layout(1000, 1000, 0, horizontal)));
    // A wall never seeded (no strips yet) always seeds.
    EXPECT_TRUE(FlowSeeder::needsReseed(0, 0, 0, vertical, layout(0, 0)));
}

} // namespace
} // namespace sorvane
