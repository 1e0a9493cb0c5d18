// When slow frames make a window give up its transitions for cross-fades: the decision over
// frame times, and a window's frames reaching a view model through the watcher.
#include "views/TransitionFrameBudget.h"
#include "views/TransitionFrameWatcher.h"

#include "DisplayEngine/slideshow/SlideshowTestHost.h"
#include "support/LogCapture.h"

#include <QQuickWindow>

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

// "S" a transition starts, "E" it ends, a number a frame shown at that millisecond. Gives the
// frames that decided the fall-back (at most one, if the budget is right).
QStringList decide(const QString &events, double intervalMs, int allowed = TransitionFrameBudget::kLateFramesAllowed)
{
    TransitionFrameBudget budget(intervalMs / 1000.0, allowed);
    QStringList decisive;
    for (const QString &event : events.split(' ', Qt::SkipEmptyParts)) {
        if (event == "S")
            budget.transitionStarted();
        else if (event == "E")
            budget.transitionEnded();
        else if (budget.frameShown(event.toDouble() / 1000.0))
            decisive.append(event);
    }
    EXPECT_EQ(budget.fellBehind(), !decisive.isEmpty());
    return decisive;
}

TEST(TransitionFrameBudget, FallsBackAfterSeveralLateFramesInOneTransition)
{
    const struct {
        const char *name;
        const char *events;
        double intervalMs;
        QStringList decisive;
    } rows[] = {
        {"smooth at 60 Hz", "S 0 17 33 50 67 83 100 E", 1000.0 / 60, {}},
        {"third late frame decides", "S 0 40 80 120 160 E", 1000.0 / 60, {"120"}},
        {"late frames spread over two transitions", "S 0 40 80 E S 200 240 280 E", 1000.0 / 60, {}},
        {"slow frames outside transitions", "0 100 200 300 400 S 410 420 E 600 700", 1000.0 / 60, {}},
        {"an idle window before the transition", "0 S 5000 5010 5020 5030 E", 1000.0 / 60, {}},
        {"the gap across a transition's end", "S 0 10 50 E 900 S 1800 1810 1850 E", 1000.0 / 60, {}},
        {"exactly twice the interval is on time", "S 0 40 80 120 160 E", 20, {}},
        {"just over twice the interval is late", "S 0 41 82 123 E", 20, {"123"}},
        {"a slower display allows more", "S 0 40 80 120 160 E", 1000.0 / 30, {}},
        {"late frames need not follow each other", "S 0 50 60 110 120 170 E", 1000.0 / 60, {"170"}},
        {"once decided it stays decided", "S 0 40 80 120 E S 0 40 80 120 160 E", 1000.0 / 60, {"120"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(decide(row.events, row.intervalMs).join(' ').toStdString(), row.decisive.join(' ').toStdString())
            << row.name;
    EXPECT_EQ(decide("S 0 40 E", 1000.0 / 60, 0), QStringList {"40"}) << "no late frame allowed";
}

TEST(TransitionFrameWatcher, AWindowThatFallsBehindTurnsItsModelToCrossFadesOnce)
{
    test::LogCapture log(QStringLiteral("sorvane.views.info=true"));
    test::SlideshowRig rig;
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::slide;
    auto model = rig.make(test::numberedItems(3), settings);
    model->start();
    rig.time.advance(1);
    QQuickWindow window;
    TransitionFrameWatcher watcher(&window, model.get(), rig.time);
    const auto frameAfter = [&](double seconds) {
        rig.time.advance(seconds);
        Q_EMIT window.afterAnimating();
    };

    frameAfter(0.2); // slow frames with nothing moving do not count
    frameAfter(0.2);
    frameAfter(0.2);
    model->next();
    ASSERT_TRUE(model->isTransitioning());
    for (int frame = 0; frame < 3; ++frame)
        frameAfter(0.05);
    EXPECT_FALSE(model->transitionBudgetFallback()) << "two late frames are allowed";
    frameAfter(0.05);
    EXPECT_TRUE(model->transitionBudgetFallback());
    frameAfter(0.05);
    const std::string fallback = test::logLine("sorvane.views", "info", TransitionFrameWatcher::kFallbackMessage);
    EXPECT_EQ(log.take(), std::vector<std::string> {fallback});
}

} // namespace
