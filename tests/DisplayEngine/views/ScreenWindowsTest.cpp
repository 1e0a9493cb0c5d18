// One window per screen, made again once the screens settle after they change.
#include "views/ScreenWindows.h"

#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>

namespace sorvane {
namespace {

// What the system says when a screen changes size, comes or goes.
using Announce = void (*)(QScreen *);
const Announce resized = [](QScreen *screen) { Q_EMIT screen->geometryChanged(screen->geometry()); };
const Announce added = [](QScreen *screen) { Q_EMIT qApp->screenAdded(screen); };
const Announce removed = [](QScreen *screen) { Q_EMIT qApp->screenRemoved(screen); };

TEST(ScreenWindows, ScreenChangesRebuildOpenWindowsOnceTheySettle)
{
    const struct {
        const char *name;
        Announce change;
        int burst; // changes in a row, 0.1 s apart
        bool closeFirst; // the windows were closed before the change
        bool closeOnNotice; // the application closes them when told (it is quitting)
        int rebuilds;
    } rows[] = {
        {"size", resized, 1, false, false, 1},
        {"added", added, 1, false, false, 1},
        {"removed", removed, 1, false, false, 1},
        {"a burst settles once", resized, 3, false, false, 1},
        {"closed windows stay closed", resized, 1, true, false, 0},
        {"closed while told", removed, 1, false, true, 0},
    };
    QScreen *screen = QGuiApplication::primaryScreen();
    ASSERT_NE(screen, nullptr);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        test::FakeTime time;
        QList<int> made; // screen index of each window the factory made
        ScreenWindows windows(
            [&](QScreen *, int index) {
                made << index;
                return new QQuickWindow;
            },
            time);
        int rebuilt = 0;
        QObject::connect(&windows, &ScreenWindows::rebuilt, [&] { ++rebuilt; });
        QObject::connect(&windows, &ScreenWindows::screensChanged, [&] {
            if (row.closeOnNotice)
                windows.close();
        });
        windows.build();
        ASSERT_EQ(windows.windows().size(), QGuiApplication::screens().size());
        if (row.closeFirst)
            windows.close();
        for (int i = 0; i < row.burst; ++i) {
            row.change(screen);
            time.advance(0.1);
        }
        EXPECT_EQ(rebuilt, 0) << "rebuilt before the screens settled";
        time.advance(ScreenWindows::settleSeconds);
        EXPECT_EQ(rebuilt, row.rebuilds);
        EXPECT_EQ(made.size(), (1 + row.rebuilds) * QGuiApplication::screens().size());
        EXPECT_EQ(made.first(), 0);
        const bool open = row.rebuilds > 0 || (!row.closeFirst && !row.closeOnNotice);
        EXPECT_EQ(windows.windows().size(), open ? QGuiApplication::screens().size() : 0);
    }
}

} // namespace
} // namespace sorvane
