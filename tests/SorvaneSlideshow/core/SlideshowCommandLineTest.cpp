#include "core/SlideshowCommandLine.h"

#include "slideshow/InMemoryPreferences.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowSettings.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Target = SlideshowLaunchRequest::MonitorTarget;
using Mode = SlideshowLaunchRequest::Mode;

SlideshowRunOptions playing(QStringList paths, std::function<void(SlideshowRunOptions &)> change = {})
{
    SlideshowRunOptions options;
    options.paths = std::move(paths);
    if (change)
        change(options);
    return options;
}

struct Case {
    const char *name;
    QStringList arguments;
    SlideshowCommandLine::Result expected;
};

TEST(SlideshowCommandLine, readsEveryOptionAndRefusesWrongUsage)
{
    using Usage = SlideshowCommandLine::Usage;
    const QList<Case> cases {
        {"paths only", {"/a", "b.jpg"}, playing({"/a", "b.jpg"})},
        {"every option, both spellings",
            {"--screens", "all", "--mode=collage", "--layout", "scatter", "--sort", "modified", "--interval", "7.5",
                "--transition=kenBurns", "--scope", "mirrored", "--sync", "phased", "--phase-delay", "0.25", "/p"},
            playing({"/p"},
                [](SlideshowRunOptions &o) {
                    o.screens = Target::all;
                    o.mode = Mode::collage;
                    o.layout = CollageLayout::scatter;
                    o.sort = SortMode::modifiedDate;
                    o.interval = 7.5;
                    o.transition = TransitionStyle::kenBurns;
                    o.scope = ControlScope::mirrored;
                    o.sync = SyncMode::phased;
                    o.phaseDelay = 0.25;
                })},
        {"word mapping", {"--layout", "varied", "--sort", "created", "--scope", "independent", "x"},
            playing({"x"},
                [](SlideshowRunOptions &o) {
                    o.layout = CollageLayout::collage;
                    o.sort = SortMode::creationDate;
                    o.scope = ControlScope::focusedOnly;
                })},
        {"linked scope", {"--scope=linked", "x"}, playing({"x"}, [](auto &o) { o.scope = ControlScope::all; })},
        {"interval bounds are inclusive", {"--interval", "1", "--phase-delay", "5", "x"},
            playing({"x"},
                [](SlideshowRunOptions &o) {
                    o.interval = 1.0;
                    o.phaseDelay = 5.0;
                })},
        {"after -- everything is a path", {"--", "--help", "-x"}, playing({"--help", "-x"})},
        {"a lone dash is a path", {"-"}, playing({"-"})},
        {"help wins over later mistakes", {"--help", "--bogus"}, SlideshowCommandLine::Help {}},
        {"short help", {"-h"}, SlideshowCommandLine::Help {}},
        {"version", {"--version"}, SlideshowCommandLine::Version {}},
        {"no paths", {"--screens", "all"}, Usage {"no folder or file to play"}},
        {"nothing at all", {}, Usage {"no folder or file to play"}},
        {"unknown option", {"--colour=red", "x"}, Usage {"unknown option --colour"}},
        {"single-dash option", {"-screens", "all", "x"}, Usage {"unknown option -screens"}},
        {"missing value", {"x", "--interval"}, Usage {"--interval needs a value"}},
        {"wrong word", {"--screens", "left", "x"}, Usage {"--screens takes current|all, not \"left\""}},
        {"transition names are case-sensitive", {"--transition", "crossfade", "x"},
            Usage {"--transition takes none|crossFade|kenBurns|slide|zoom|flip|random, not \"crossfade\""}},
        {"interval too short", {"--interval", "0.5", "x"},
            Usage {"--interval takes seconds from 1 to 60, not \"0.5\""}},
        {"interval not a number", {"--interval=nan", "x"},
            Usage {"--interval takes seconds from 1 to 60, not \"nan\""}},
        {"phase delay too long", {"--phase-delay", "6", "x"},
            Usage {"--phase-delay takes seconds from 0.1 to 5, not \"6\""}},
        {"layout on a standard show", {"--mode", "standard", "--layout", "flow", "x"},
            Usage {"--layout needs --mode collage"}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(SlideshowCommandLine::parse(c.arguments), c.expected) << c.name;
}

TEST(SlideshowRunOptions, buildsTheLaunchAndChangesOnlyWhatWasAsked)
{
    struct LaunchCase {
        const char *name;
        QStringList arguments;
        SlideshowLaunchRequest expected;
    };
    const QList<LaunchCase> cases {
        {"defaults", {"x"}, {Mode::standard, std::nullopt, Target::current}},
        {"a layout alone asks for a wall", {"--layout", "flow", "--screens", "all", "x"},
            {Mode::collage, CollageLayout::flow, Target::all}},
        {"a wall without a layout", {"--mode", "collage", "x"}, {Mode::collage, std::nullopt, Target::current}},
    };
    for (const LaunchCase &c : cases) {
        const auto parsed = SlideshowCommandLine::parse(c.arguments);
        ASSERT_TRUE(std::holds_alternative<SlideshowRunOptions>(parsed)) << c.name;
        EXPECT_EQ(std::get<SlideshowRunOptions>(parsed).launchRequest(), c.expected) << c.name;
    }

    const auto parsed = SlideshowCommandLine::parse({"--interval", "9", "--sync", "phased", "x"});
    const auto &options = std::get<SlideshowRunOptions>(parsed);
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::flip;
    options.applyTo(settings);
    EXPECT_EQ(settings.defaultDuration, 9.0);
    EXPECT_EQ(settings.transitionStyle, TransitionStyle::flip);

    // The run's global settings live in memory seeded from the stored ones: an option
    // changes its own key there and leaves the stored scope alone.
    InMemoryPreferences run;
    run.setValue(SlideshowGlobalSettings::controlScopeKey, toRaw(ControlScope::mirrored));
    SlideshowGlobalSettings global(run);
    options.applyTo(global);
    EXPECT_EQ(global.syncMode(), SyncMode::phased);
    EXPECT_EQ(global.controlScope(), ControlScope::mirrored);
    EXPECT_TRUE(options.changesGlobalSettings());
    EXPECT_TRUE(options.changesSettings());
    EXPECT_FALSE(
        std::get<SlideshowRunOptions>(SlideshowCommandLine::parse({"--screens", "all", "--sort", "random", "x"}))
            .changesSettings());
}

} // namespace
} // namespace sorvane
