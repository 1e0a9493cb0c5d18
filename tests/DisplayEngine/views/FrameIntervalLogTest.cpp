// The frame lines a slideshow window logs for the benchmarks: which frames count as moving,
// what they are called, and that a frame after a pause or a change of motion only sets the mark.
#include "views/FrameIntervalLog.h"

#include "DisplayEngine/slideshow/SlideshowTestHost.h"
#include "support/LogCapture.h"

#include <QQuickWindow>

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

// "N" shows the next slide, "P" pauses, "R" resumes, a number moves time that many
// milliseconds and swaps a frame. Gives the messages logged.
QStringList framesLogged(TransitionStyle style, const QString &script)
{
    test::LogCapture log(QStringLiteral("sorvane.frames.info=true"));
    test::SlideshowRig rig;
    SlideshowSettings settings;
    settings.transitionStyle = style;
    auto model = rig.make(test::numberedItems(4), settings);
    model->start();
    rig.time.advance(1);
    QQuickWindow window;
    FrameIntervalLog frames(&window, model.get(), rig.time);
    for (const QString &step : script.split(' ', Qt::SkipEmptyParts)) {
        if (step == "N") {
            model->next();
        } else if (step == "P" || step == "R") {
            model->setPaused(step == "P");
        } else {
            rig.time.advance(step.toDouble() / 1000.0);
            Q_EMIT window.frameSwapped();
        }
    }
    QStringList messages;
    for (const std::string &line : log.take())
        messages << QString::fromStdString(line).section(QStringLiteral(": "), 1);
    return messages;
}

QString frame(double ms, const char *what)
{
    return QStringLiteral("Frame after %1 ms: %2").arg(ms, 0, 'f', 1).arg(QLatin1String(what));
}

TEST(FrameIntervalLog, LogsTheFramesOfMotionOnly)
{
    const struct {
        const char *name;
        TransitionStyle style;
        const char *script;
        QStringList logged;
    } rows[] = {
        {"frames of a still are not logged", TransitionStyle::crossFade, "100 100 100", {}},
        {"a cross-fade's frames after the first", TransitionStyle::crossFade, "100 N 20 20 30",
            {frame(20, "transition crossFade"), frame(30, "transition crossFade")}},
        {"the transition's end stops the lines", TransitionStyle::crossFade, "N 20 25 900 40 40",
            {frame(25, "transition crossFade")}},
        {"a gap before the next transition is not one of its frames", TransitionStyle::crossFade,
            "N 20 20 900 N 500 17", {frame(20, "transition crossFade"), frame(17, "transition crossFade")}},
        {"no transition, no motion", TransitionStyle::none, "N 20 20 N 20", {}},
        {"Ken Burns: the transition, then the drift", TransitionStyle::kenBurns, "N 20 20 900 33 34",
            {frame(20, "transition kenBurns"), frame(33, "drift"), frame(34, "drift")}},
        {"a paused drift does not move", TransitionStyle::kenBurns, "N 900 33 P 33 33 R 50 33",
            {frame(33, "drift"), frame(33, "drift")}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(framesLogged(row.style, row.script).join('|').toStdString(), row.logged.join('|').toStdString())
            << row.name;
}

} // namespace
