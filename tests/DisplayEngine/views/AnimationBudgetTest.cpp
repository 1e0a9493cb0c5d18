#include "views/AnimationBudget.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

// The bound that keeps the player from animating a bomb: canvas × frames × 4 bytes past 192 MiB.
TEST(AnimationBudgetTest, RefusesWhenCanvasTimesFramesExceedsTheBudget)
{
    const struct {
        QSize canvas;
        int frames;
        bool refused;
    } rows[] = {
        {{1280, 720}, 40, false}, // 147 MB
        {{1280, 720}, 60, true}, // 221 MB
        {{4000, 3000}, 1, false}, // one canvas counts twice: 96 MB
        {{16383, 16383}, -1, true}, // count unknown
        {{65535, 65535}, 3000, true}, // 17 GB a frame: no overflow on the way
        {{1, 1}, 2'000'000'000, true},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(!AnimationBudget::refusal(row.canvas, row.frames).isEmpty(), row.refused)
            << row.canvas.width() << "x" << row.canvas.height() << " " << row.frames;
    }
}

} // namespace
} // namespace sorvane
