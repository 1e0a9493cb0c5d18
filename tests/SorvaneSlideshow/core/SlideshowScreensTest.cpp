#include "core/SlideshowScreenLoss.h"
#include "core/SlideshowScreenNumbers.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(SlideshowScreenNumbers, aDisplayKeepsItsNumberAndGetsItBackWhenItReturns)
{
    SlideshowScreenNumbers numbers;
    struct Step {
        const char *name;
        QString display;
        QSet<quint32> connected;
        quint32 expected;
    };
    const QList<Step> steps {
        {"first display", "HDMI-1", {}, 1},
        {"second display", "DP-1", {1}, 2},
        {"the same name while the first is connected", "HDMI-1", {1, 2}, 3},
        {"an unnamed display", "", {1, 2, 3}, 4},
        {"another unnamed display", "", {1, 2, 3, 4}, 5},
        {"a display back after going away", "DP-1", {1, 3}, 2},
        {"the first name back while its twin stays", "HDMI-1", {2, 3}, 1},
    };
    for (const Step &step : steps)
        EXPECT_EQ(numbers.numberFor(step.display, step.connected), step.expected) << step.name;
}

TEST(SlideshowScreenLoss, windowsOfAGoneDisplayCloseUnlessTheShowWouldEnd)
{
    const QUuid a = QUuid::createUuid(), b = QUuid::createUuid(), c = QUuid::createUuid();
    using Outcome = SlideshowScreenLoss::Outcome;
    struct Case {
        const char *name;
        QList<SlideshowScreenLoss::Window> windows;
        quint32 removed;
        bool anotherScreenLeft;
        Outcome expected;
    };
    const QList<Case> cases {
        {"one of two displays goes: one window is left", {{a, 1}, {b, 2}}, 2, true, {{b}, {}}},
        {"a display without a window", {{a, 1}, {b, 2}}, 3, true, {}},
        {"the only window's display goes: it moves", {{a, 2}}, 2, true, {{}, {a}}},
        {"two windows on the gone display, none elsewhere", {{a, 2}, {b, 2}}, 2, true, {{b}, {a}}},
        {"nowhere left to go", {{a, 2}}, 2, false, {{a}, {}}},
        {"three windows, the middle display goes", {{a, 1}, {b, 2}, {c, 3}}, 2, true, {{b}, {}}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(SlideshowScreenLoss::afterRemoval(c.windows, c.removed, c.anotherScreenLeft), c.expected) << c.name;
}

} // namespace
} // namespace sorvane
