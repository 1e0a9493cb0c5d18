#include "collage/FlowAutoCycle.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace sorvane {
namespace {

TEST(FlowAutoCycle, ReplacesATilePerStretchOfScrolling)
{
    struct Step {
        double seconds;
        bool on = true;
        bool scrolling = true;
    };
    struct Case {
        const char *what;
        std::vector<Step> steps;
        std::vector<bool> due;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        {"every 1.5 s", {{0.5}, {0.5}, {0.5}, {0.5}, {0.5}, {0.5}}, {false, false, true, false, false, true}},
        {"off", {{0.5, false}, {0.5, false}, {0.5, false}, {0.5, false}}, {false, false, false, false}},
        {"only scrolling time counts", {{0.5}, {0.5, true, false}, {0.5}, {0.5}}, {false, false, false, true}},
        {"turning it off starts afresh", {{1.0}, {0.5, false}, {1.0}, {0.5}}, {false, false, false, true}},
        {"a long step releases one tile", {{10}, {0.5}, {1.0}}, {true, false, true}},
        {"no time, or time not a number", {{1.0}, {0}, {-3}, {nan}, {0.5}}, {false, false, false, false, true}},
    };
    for (const Case &c : cases) {
        FlowAutoCycle cycle;
        std::vector<bool> due;
        for (const Step &step : c.steps)
            due.push_back(cycle.advance(step.seconds, step.on, step.scrolling));
        EXPECT_EQ(due, c.due) << c.what;
    }
}

} // namespace
} // namespace sorvane
