#include "collage/FlowScroller.h"
#include "collage/FlowGeometry.h"

#include <gtest/gtest.h>

#include <vector>

namespace sorvane {
namespace {

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

// The tile at the viewer's leading edge.
size_t tileAtEdge(const FlowScrollColumn &column, double position)
{
    size_t k = 0;
    while (k + 1 < column.aspects.size() && column.tileStart(k + 1) <= position)
        ++k;
    return k;
}

TEST(FlowScroller, StripsRunInTheirDirections)
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
    };
    const std::vector<double> aspects {1, 0.75, 1.5, 1};
    for (const Case &c : cases) {
        FlowScroller scroller(c.bidirectional, c.reversed);
        scroller.setColumns(strips(8, aspects), 0);
        const double cycle = scroller.columns()[0].cycleLength();
        std::vector<double> at0;
        std::vector<double> at10;
        scroller.positions(0, at0);
        scroller.positions(10, at10);
        ASSERT_EQ(at10.size(), 8u);
        for (size_t i = 0; i < 8; ++i) {
            EXPECT_DOUBLE_EQ(at0[i], 0) << i;
            EXPECT_DOUBLE_EQ(at10[i], FlowGeometry::wrap(c.expected[i] * 10.0, cycle)) << i;
        }
    }
}

TEST(FlowScroller, PositionsRepeatEveryCycle)
{
    FlowScroller scroller;
    scroller.setColumns(strips(2, {1, 0.5, 2}), 0);
    const double cycle = scroller.columns()[0].cycleLength(); // 300 + 600 + 150 + 3 × 6
    ASSERT_DOUBLE_EQ(cycle, 1068);
    for (const double offset : {0.0, 250.0, 1067.0, 5000.0}) {
        for (size_t i = 0; i < 2; ++i) {
            const double position = scroller.position(i, offset);
            EXPECT_GE(position, 0);
            EXPECT_LT(position, cycle);
            EXPECT_NEAR(scroller.position(i, offset + 3 * cycle), position, 1e-9);
        }
    }
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

TEST(FlowScroller, ReplacingATileAboveTheViewerKeepsTheViewersTileInPlace)
{
    const std::vector<double> aspects {1, 0.75, 1.5, 1, 0.6, 1.2};
    const std::vector<double> replacements {0.5, 2.0, 0.05};
    int checked = 0;
    // Strip 0 runs forwards, strip 1 backwards.
    for (const double offset : {450.0, 1234.5, 5000.0, -777.0, 123456.0}) {
        for (size_t s = 0; s < 2; ++s) {
            FlowScroller probe;
            probe.setColumns(strips(2, aspects), 0);
            const size_t k = tileAtEdge(probe.columns()[s], probe.position(s, offset));
            for (size_t above = 0; above < k; ++above) {
                for (const double aspect : replacements) {
                    FlowScroller scroller;
                    scroller.setColumns(strips(2, aspects), 0);
                    const FlowScrollColumn old = scroller.columns()[s];
                    const double oldPosition = scroller.position(s, offset);

                    std::vector<FlowScrollColumn> changed = scroller.columns();
                    changed[s].aspects[above] = aspect;
                    changed[s].itemIds[above] = QUuid::createUuid();
                    scroller.setColumns(changed, offset);
                    const FlowScrollColumn &now = scroller.columns()[s];
                    const double newPosition = scroller.position(s, offset);

                    SCOPED_TRACE(testing::Message()
                        << "offset " << offset << " strip " << s << " tile " << above << " aspect " << aspect);
                    // Screen position relative to the viewer's edge, of the viewer's tile and all after it.
                    for (size_t t = k; t < aspects.size(); ++t)
                        EXPECT_NEAR(now.tileStart(t) - newPosition, old.tileStart(t) - oldPosition, 1e-6) << t;
                    // The other strip did not move.
                    EXPECT_DOUBLE_EQ(scroller.position(1 - s, offset), probe.position(1 - s, offset));
                    ++checked;
                }
            }
        }
    }
    EXPECT_GE(checked, 30); // every offset has tiles above the viewer
}

TEST(FlowScroller, AReseedStartsAnchorsAfresh)
{
    FlowScroller scroller;
    auto columns = strips(3, {1, 0.75, 1.5, 1});
    scroller.setColumns(columns, 0);
    columns[0].aspects[0] = 0.5;
    scroller.setColumns(columns, 1000);
    ASSERT_NE(scroller.flowTrackAnchor()[0], 0);

    scroller.setColumns(strips(4, {1, 0.75, 1.5, 1}), 1000);
    EXPECT_EQ(scroller.flowTrackAnchor(), std::vector<double>(4, 0.0));
}

} // namespace
} // namespace sorvane
