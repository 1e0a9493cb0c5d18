#include "collage/FlowColumnBuilder.h"
#include "collage/FlowGeometry.h"
#include "collage/FlowSeeder.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(FlowColumnBuilder, GroupsSlotsIntoStripsInSlotOrder)
{
    const QUuid a = QUuid::createUuid(), b = QUuid::createUuid(), c = QUuid::createUuid(), d = QUuid::createUuid(),
                e = QUuid::createUuid();
    const QHash<QUuid, double> aspects {{a, 1.5}, {c, 0.01}};
    for (const FlowOrientation orientation : {FlowOrientation::vertical, FlowOrientation::horizontal}) {
        const auto columns
            = FlowColumnBuilder::build({a, b, c, d, e}, {0, 1, 0, 1, 0}, aspects, 2, 1000, 800, orientation);
        ASSERT_EQ(columns.size(), 2u);
        const double thickness = orientation == FlowOrientation::vertical ? (1000 - 18) / 2.0 : (800 - 18) / 2.0;
        const bool horizontal = orientation == FlowOrientation::horizontal;

        EXPECT_EQ(columns[0].columnIndex, 0);
        EXPECT_EQ(columns[0].slotIndices, std::vector<int>({0, 2, 4}));
        EXPECT_EQ(columns[0].itemIds, std::vector<QUuid>({a, c, e}));
        // Measured, held at the floor, and not yet measured.
        EXPECT_EQ(columns[0].aspects, std::vector<double>({1.5, 0.05, 1.0}));

        EXPECT_EQ(columns[1].columnIndex, 1);
        EXPECT_EQ(columns[1].slotIndices, std::vector<int>({1, 3}));
        EXPECT_EQ(columns[1].itemIds, std::vector<QUuid>({b, d}));
        EXPECT_EQ(columns[1].aspects, std::vector<double>({1.0, 1.0}));
        for (const FlowScrollColumn &column : columns) {
            EXPECT_DOUBLE_EQ(column.columnWidth, thickness);
            EXPECT_EQ(column.horizontal, horizontal);
        }
    }
}

TEST(FlowColumnBuilder, LeavesOutSlotsWithoutAStrip)
{
    const QUuid a = QUuid::createUuid(), b = QUuid::createUuid(), c = QUuid::createUuid();
    // Strip 5 and -1 do not exist; the fourth strip entry has no slot.
    const auto columns
        = FlowColumnBuilder::build({a, b, c}, {0, 5, -1, 1}, {}, 2, 1000, 800, FlowOrientation::vertical);
    ASSERT_EQ(columns.size(), 2u);
    EXPECT_EQ(columns[0].slotIndices, std::vector<int>({0}));
    EXPECT_TRUE(columns[1].slotIndices.empty());
    EXPECT_EQ(columns[1].copies, 1);
    EXPECT_TRUE(FlowColumnBuilder::build({a}, {0}, {}, 0, 1000, 800, FlowOrientation::vertical).empty());
}

TEST(FlowColumnBuilder, SeededStripsCoverTheScreenAtEveryPhase)
{
    struct Case {
        double width;
        double height;
        FlowOrientation orientation;
        double aspect; // of every item
    };
    const Case cases[] = {
        {1920, 1080, FlowOrientation::vertical, 1.0},
        {1920, 1080, FlowOrientation::vertical, 4.0}, // panoramas: short tiles
        {1920, 1080, FlowOrientation::horizontal, 0.3}, // portraits in rows: short tiles
        {800, 2400, FlowOrientation::vertical, 1.5},
        {3840, 2160, FlowOrientation::horizontal, 1.0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height << " aspect " << c.aspect);
        const FlowSeedResult seeded = FlowSeeder::seed({c.width, c.height, 0, c.orientation, {}}, 1);
        ASSERT_TRUE(seeded.seed);
        QList<QUuid> slots;
        QHash<QUuid, double> aspects;
        for (qsizetype i = 0; i < seeded.seed->flowColumnOf.size(); ++i) {
            slots.append(QUuid::createUuid());
            aspects.insert(slots.last(), c.aspect);
        }
        const double mainExtent = FlowGeometry::mainExtent(c.width, c.height, c.orientation);
        for (const FlowScrollColumn &column : FlowColumnBuilder::build(
                 slots, seeded.seed->flowColumnOf, aspects, seeded.columns, c.width, c.height, c.orientation)) {
            const double cycle = column.cycleLength();
            ASSERT_GT(cycle, 0);
            // The furthest the leading edge stands is just short of one cycle.
            EXPECT_GE(column.copies * cycle, cycle + mainExtent) << column.columnIndex;
        }
    }
}

} // namespace
} // namespace sorvane
