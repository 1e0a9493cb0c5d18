#include "slideshow/SlideshowManager.h"
#include "collage/CollageWallModel.h"
#include "slideshow/DisplaySleepInhibitor.h"
#include "slideshow/ImageClaimTracker.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/NullHostShell.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowScreenPlan.h"
#include "slideshow/SlideshowViewModel.h"
#include "slideshow/SlideshowWindowFactory.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

// Readable failures: a QString prints as its text.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

using namespace sorvane;
using Target = SlideshowLaunchRequest::MonitorTarget;

namespace {

// What a test sees of a window; the window itself belongs to the manager.
struct WindowRecord {
    SlideshowScreen screen;
    bool fullScreen = false;
    bool closed = false;
};

class FakeWindow final : public SlideshowWindowController {
public:
    explicit FakeWindow(std::shared_ptr<WindowRecord> record) : record(std::move(record)) { }
    void show(bool fullScreen) override { record->fullScreen = fullScreen; }
    void setFullScreen(bool fullScreen) override { record->fullScreen = fullScreen; }
    bool isFullScreen() const override { return record->fullScreen; }
    void close() override { record->closed = true; }
    std::optional<SlideshowScreen> screen() const override { return record->screen; }
    std::shared_ptr<WindowRecord> record;
};

class FakeWindows final : public SlideshowWindowFactory {
public:
    QList<SlideshowScreen> screens() const override { return displays; }
    std::optional<quint32> currentScreenId() const override { return current; }
    std::unique_ptr<SlideshowWindowController> createWindow(
        SlideshowViewModel &, const SlideshowScreen &screen) override
    {
        records.append(std::make_shared<WindowRecord>(WindowRecord {screen}));
        return std::make_unique<FakeWindow>(records.last());
    }

    // Ids 1..3 from right to left, so the first display is not the first listed.
    QList<SlideshowScreen> displays {
        {1, "right", {3840, 0, 1920, 1080}}, {2, "middle", {1920, 0, 1920, 1080}}, {3, "left", {0, 0, 1920, 1080}}};
    std::optional<quint32> current;
    QList<std::shared_ptr<WindowRecord>> records;
};

class FakeInhibitor final : public DisplaySleepInhibitor {
public:
    void inhibit() override { held = true; }
    void release() override { held = false; }
    bool held = false;
};

struct Harness {
    explicit Harness(ControlScope scope = ControlScope::all)
    {
        manager.globalSettings()->setControlScope(scope);
        for (int i = 0; i < 6; ++i)
            items.append(ImageItem(QUrl::fromLocalFile(QStringLiteral("/photos/%1.jpg").arg(i))));
    }

    static SlideshowSettings inOrder()
    {
        SlideshowSettings settings;
        settings.secondarySlideshowSortMode = SortMode::sequential;
        return settings;
    }
    QList<QUuid> launch(Target target = Target::all, SlideshowSettings settings = inOrder())
    {
        return manager.launch(
            {SlideshowLaunchRequest::Mode::standard, std::nullopt, target}, items, settings, SortMode::sequential);
    }
    SlideshowViewModel &vm(int window) { return *manager.viewModel(manager.activeSlideshowIds().at(window)); }
    QString shown(int window) { return vm(window).currentItem()->url().path(); }
    QStringList allShown()
    {
        QStringList result;
        for (int i = 0; i < manager.activeSlideshowIds().size(); ++i)
            result.append(shown(i));
        return result;
    }

    test::FakeTime time;
    InMemoryPreferences preferences;
    NullHostShell host;
    FakeWindows windows;
    FakeInhibitor inhibitor;
    SlideshowManager manager {{time, time, preferences, host, windows, &inhibitor}};
    QList<ImageItem> items;
};

TEST(SlideshowManager, PhaseStepSpreadsTheIntervalOrCapsItAtTheDelay)
{
    const struct {
        int windows;
        double interval;
        bool divideEvenly;
        double delay;
        double step;
    } rows[] = {
        {1, 5, false, 0.5, 0},
        {1, 5, true, 2, 0},
        {0, 5, true, 2, 0},
        {4, 5, false, 0.5, 0.5},
        {4, 5, false, 2, 1.25},
        {4, 5, true, 0.5, 1.25},
        {4, 5, true, 2, 1.25},
        {2, 3, false, 5, 1.5},
    };
    for (const auto &row : rows)
        EXPECT_DOUBLE_EQ(SlideshowManager::phaseStep(row.windows, row.interval, row.divideEvenly, row.delay), row.step)
            << row.windows << " windows, " << row.interval << " s, delay " << row.delay;
}

TEST(SlideshowScreenPlan, PicksDisplaysInOrderWithinTheLimit)
{
    const FakeWindows windows;
    const struct {
        Target target;
        std::optional<quint32> current, first;
        bool limit;
        qsizetype running;
        QSet<quint32> occupied;
        QList<quint32> expected;
    } rows[] = {
        {Target::current, 1, std::nullopt, true, 0, {}, {1}},
        {Target::current, std::nullopt, std::nullopt, true, 0, {}, {3}},
        {Target::current, 9, 2, true, 0, {}, {2}},
        {Target::current, 1, std::nullopt, true, 3, {1, 2, 3}, {}},
        {Target::all, std::nullopt, std::nullopt, true, 0, {}, {3, 2, 1}},
        {Target::all, std::nullopt, 1, true, 0, {}, {1, 3, 2}},
        {Target::all, std::nullopt, 7, true, 0, {}, {3, 2, 1}},
        {Target::all, std::nullopt, std::nullopt, true, 1, {3}, {2, 1}},
        {Target::all, std::nullopt, std::nullopt, true, 1, {}, {3, 2}},
        {Target::all, std::nullopt, std::nullopt, false, 3, {1, 2, 3}, {3, 2, 1}},
    };
    for (const auto &row : rows) {
        QList<quint32> ids;
        for (const SlideshowScreen &screen : SlideshowScreenPlan::screensToOpen(
                 {row.target, windows.displays, row.current, row.first, row.limit, row.running, row.occupied}))
            ids.append(screen.id);
        EXPECT_EQ(ids, row.expected) << "running " << row.running << " first " << row.first.value_or(0);
    }
    EXPECT_TRUE(SlideshowScreenPlan::screensToOpen({Target::all, {}, 1, 1, false, 0, {}}).isEmpty());
}

TEST(SlideshowManager, LaunchOpensWindowsThenSecondariesTakeTheirOrderAndPause)
{
    const struct {
        Target target;
        bool limit;
        bool startsPaused;
        int secondLaunchAdds;
    } rows[] = {
        {Target::all, true, true, 0},
        {Target::all, false, false, 3},
        {Target::current, true, false, 1},
    };
    for (const auto &row : rows) {
        Harness h;
        h.windows.current = 1;
        SlideshowSettings settings;
        settings.limitSlideshowsToMonitorCount = row.limit;
        settings.secondarySlideshowStartsPaused = row.startsPaused;
        settings.secondarySlideshowSortMode = SortMode::modifiedDate;
        const QList<QUuid> ids = h.launch(row.target, settings);
        const int count = row.target == Target::all ? 3 : 1;
        ASSERT_EQ(ids.size(), count);
        EXPECT_EQ(h.windows.records.first()->screen.id, row.target == Target::all ? 3u : 1u);
        EXPECT_EQ(h.manager.focusedSlideshowId(), ids.first());
        EXPECT_TRUE(h.inhibitor.held);
        h.launch(row.target, settings);
        ASSERT_EQ(h.manager.activeSlideshowIds().size(), count + row.secondLaunchAdds);
        for (int i = 0; i < count + row.secondLaunchAdds; ++i) {
            EXPECT_EQ(h.vm(i).sortMode(), i == 0 ? SortMode::sequential : SortMode::modifiedDate) << i;
            EXPECT_EQ(h.vm(i).isPaused(), i > 0 && row.startsPaused) << i;
            EXPECT_EQ(h.vm(i).manager(), &h.manager);
            EXPECT_TRUE(h.windows.records[i]->fullScreen);
        }
        // Linked play/pause leaves every window in the state the pressing one turns to.
        h.manager.perform(h.manager.activeSlideshowIds().last(), SlideshowAction::startStop);
        for (int i = 0; i < count + row.secondLaunchAdds; ++i)
            EXPECT_EQ(h.vm(i).isPaused(), !row.startsPaused) << i;
    }
}

TEST(SlideshowManager, ScopeRoutesStepsAndAnnouncesItself)
{
    // Windows start on the first free files (0, 1, 2); the first is focused when the
    // scope is chosen, then a step is asked for in the second. Mirrored windows all
    // show the leader's file, whichever that is.
    const struct {
        ControlScope from, scope;
        QString notice;
        QStringList afterNextFromSecond;
    } rows[] = {
        {ControlScope::all, ControlScope::focusedOnly, "Independent Mode: Each slideshow advances separately",
            {"/photos/0.jpg", "/photos/3.jpg", "/photos/2.jpg"}},
        {ControlScope::focusedOnly, ControlScope::all,
            "Linked Mode: Slideshows advance together but play different images",
            {"/photos/3.jpg", "/photos/4.jpg", "/photos/5.jpg"}},
        {ControlScope::all, ControlScope::mirrored, "Mirror Mode: All slideshows show the same image", {}},
    };
    for (const auto &row : rows) {
        Harness h(row.from);
        const QList<QUuid> ids = h.launch();
        h.manager.setControlScope(row.scope);
        EXPECT_EQ(h.manager.scopeChangeMessage(), row.notice);
        EXPECT_EQ(h.manager.mirrorLeaderId(), row.scope == ControlScope::mirrored ? ids[0] : QUuid());
        h.manager.windowFocused(ids[1]);
        h.manager.perform(ids[1], SlideshowAction::nextImage);
        const QStringList shown = h.allShown();
        if (row.afterNextFromSecond.isEmpty()) {
            EXPECT_EQ(QSet<QString>(shown.begin(), shown.end()).size(), 1) << shown.join(' ').toStdString();
            EXPECT_NE(shown[0], "/photos/0.jpg");
        } else {
            EXPECT_EQ(shown, row.afterNextFromSecond) << row.notice.toStdString();
        }
        h.time.advance(SlideshowManager::noticeDuration - 0.1);
        EXPECT_EQ(h.manager.scopeChangeMessage(), row.notice);
        h.time.advance(0.1);
        EXPECT_EQ(h.manager.scopeChangeMessage(), QString());
    }
}

TEST(SlideshowManager, OnlyTheNewestNoticeClearsItself)
{
    Harness h(ControlScope::focusedOnly);
    const QList<QUuid> ids = h.launch();
    h.manager.perform(ids[0], SlideshowAction::cycleImageFilter);
    EXPECT_EQ(h.manager.filterChangeMessage(), "Filter: Black & White");
    h.time.advance(1.5);
    h.manager.perform(ids[1], SlideshowAction::cycleImageFilter);
    h.manager.perform(ids[1], SlideshowAction::cycleImageFilter);
    EXPECT_EQ(h.manager.filterChangeMessage(), "Filter: Sepia");
    EXPECT_EQ(h.vm(0).imageFilter(), ImageFilter::blackAndWhite);
    h.time.advance(1.0);
    EXPECT_EQ(h.manager.filterChangeMessage(), "Filter: Sepia");
    h.time.advance(1.0);
    EXPECT_EQ(h.manager.filterChangeMessage(), QString());
}

TEST(SlideshowManager, EscapeFollowsTheEscapeBehaviour)
{
    const struct {
        EscBehavior behavior;
        bool fullScreen;
        int remaining;
        int remainingAfterSecondEscape;
        int focusedAfter; // -1: none
    } rows[] = {
        {EscBehavior::stopAll, true, 0, 0, -1},
        {EscBehavior::stopFocused, true, 2, 1, 2},
        {EscBehavior::exitFullscreenFirst, true, 3, 2, 0},
        {EscBehavior::exitFullscreenFirst, false, 2, 1, 2},
    };
    for (const auto &row : rows) {
        Harness h;
        SlideshowSettings settings = Harness::inOrder();
        settings.alwaysStartFullScreen = row.fullScreen;
        const QList<QUuid> ids = h.launch(Target::all, settings);
        h.manager.globalSettings()->setEscBehavior(row.behavior);
        int stopped = 0;
        QObject::connect(&h.manager, &SlideshowManager::allStopped, [&stopped] { ++stopped; });
        h.manager.windowFocused(ids[1]);
        h.manager.escapePressed(ids[1]);
        EXPECT_EQ(h.manager.activeSlideshowIds().size(), row.remaining) << int(row.behavior);
        EXPECT_EQ(h.windows.records[1]->closed, row.remaining < 3);
        EXPECT_EQ(h.windows.records[1]->fullScreen, row.fullScreen && row.remaining < 3);
        EXPECT_EQ(h.windows.records[0]->closed, row.remaining == 0);
        h.manager.perform(h.manager.focusedSlideshowId(), SlideshowAction::exit);
        EXPECT_EQ(h.manager.activeSlideshowIds().size(), row.remainingAfterSecondEscape);
        EXPECT_TRUE(h.windows.records[1]->closed);
        EXPECT_EQ(h.manager.focusedSlideshowId(), row.focusedAfter < 0 ? QUuid() : ids[row.focusedAfter]);
        EXPECT_EQ(stopped, row.remaining == 0 ? 1 : 0);
        EXPECT_EQ(h.inhibitor.held, row.remaining > 0);
    }
}

TEST(SlideshowManager, LinkedWindowsAdvanceTogetherOrPhasedAndAClosedWindowLosesItsTurnAndClaim)
{
    const struct {
        SyncMode mode;
        bool divideEvenly;
        double step;
    } rows[] = {
        {SyncMode::synchronized, false, 0},
        {SyncMode::phased, false, 0.5},
        {SyncMode::phased, true, 5.0 / 3},
    };
    for (const auto &row : rows) {
        Harness h;
        h.manager.globalSettings()->setSyncMode(row.mode);
        h.manager.globalSettings()->setPhaseDelayDivideEvenly(row.divideEvenly);
        const QList<QUuid> ids = h.launch();
        const QStringList before = h.allShown();
        h.time.advance(5.0);
        EXPECT_NE(h.shown(0), before[0]);
        EXPECT_EQ(h.shown(1) != before[1], row.step == 0);
        EXPECT_EQ(h.manager.pendingPhasedAdvances(), row.step == 0 ? QList<QUuid>() : ids.mid(1));
        if (row.step == 0)
            continue;
        h.time.advance(row.step - 0.02);
        EXPECT_EQ(h.shown(1), before[1]);
        h.time.advance(0.04);
        EXPECT_NE(h.shown(1), before[1]);
        const QUrl closing = h.vm(2).currentItem()->url();
        h.manager.windowClosed(ids[2]);
        EXPECT_TRUE(h.manager.pendingPhasedAdvances().isEmpty());
        EXPECT_FALSE(h.manager.imageClaimTracker().isClaimed(closing));
        EXPECT_TRUE(h.manager.imageClaimTracker().isClaimed(h.vm(1).currentItem()->url()));
        EXPECT_FALSE(h.windows.records[2]->closed); // it closed itself
        h.time.advance(5.0 - row.step);
        EXPECT_EQ(h.manager.pendingPhasedAdvances(), QList<QUuid> {ids[1]});
        h.manager.perform(ids[0], SlideshowAction::nextImage);
        EXPECT_TRUE(h.manager.pendingPhasedAdvances().isEmpty());
    }
}

TEST(SlideshowManager, AVideoHoldsOnlyItsOwnWindow)
{
    Harness h;
    h.items[0].setMediaType(MediaType::video); // the first window starts on it
    h.launch();
    ASSERT_TRUE(h.vm(0).isHeldByVideo());
    const QStringList before = h.allShown();
    h.time.advance(5.0);
    EXPECT_EQ(h.allShown(), QStringList({before[0], "/photos/3.jpg", "/photos/4.jpg"}));
}

TEST(SlideshowManager, WindowsThatShareTheOnlyKnownFileSpreadOutWhenMoreArrive)
{
    struct Row {
        ControlScope scope;
        bool avoidDuplicates;
        qsizetype distinctFiles;
    };
    for (const Row &row : {Row {ControlScope::all, true, 3}, Row {ControlScope::focusedOnly, true, 3},
             Row {ControlScope::mirrored, true, 1}, Row {ControlScope::all, false, 1}}) {
        SCOPED_TRACE(testing::Message() << "scope " << int(row.scope) << ", avoid " << row.avoidDuplicates);
        Harness h(row.scope);
        h.preferences.setValue(SlideshowGlobalSettings::duplicateAvoidanceKey, row.avoidDuplicates);
        const QList<ImageItem> all = h.items;
        h.items = all.mid(0, 1);
        h.launch();
        h.manager.setItems(all);
        const QStringList shown = h.allShown();
        EXPECT_EQ(QSet<QString>(shown.begin(), shown.end()).size(), row.distinctFiles) << shown.join(' ').toStdString();
        if (row.avoidDuplicates) {
            // Every file on screen stays claimed, so a later step cannot land on one.
            for (const QString &file : shown)
                EXPECT_TRUE(h.manager.imageClaimTracker().isClaimed(QUrl::fromLocalFile(file))) << file.toStdString();
        }
    }
}

TEST(SlideshowManager, MirrorFollowsTheLeaderAndHandsLeadershipOnWhenItCloses)
{
    Harness h(ControlScope::mirrored);
    const QList<QUuid> ids = h.launch();
    EXPECT_EQ(h.manager.mirrorLeaderId(), ids[0]);
    const QString first = h.shown(0);
    EXPECT_EQ(h.allShown(), QStringList({first, first, first}));
    h.time.advance(5.0);
    const QString second = h.shown(0);
    EXPECT_NE(second, first);
    EXPECT_EQ(h.allShown(), QStringList({second, second, second}));
    h.manager.perform(ids[2], SlideshowAction::startStop);
    EXPECT_TRUE(h.vm(0).isPaused());
    h.manager.windowFocused(ids[2]);
    h.manager.windowClosed(ids[0]);
    EXPECT_EQ(h.manager.mirrorLeaderId(), ids[2]);
    EXPECT_TRUE(h.manager.imageClaimTracker().isClaimed(QUrl::fromLocalFile(second)));
    h.manager.perform(ids[1], SlideshowAction::nextImage);
    const QString third = h.shown(1);
    EXPECT_NE(third, second);
    EXPECT_EQ(h.allShown(), QStringList({third, third}));
}

TEST(SlideshowManager, CollageWallsTakeMirrorRolesAndHoldNoLinkedAdvanceBack)
{
    Harness h(ControlScope::mirrored);
    const QList<QUuid> ids = h.manager.launch({SlideshowLaunchRequest::Mode::collage, CollageLayout::scatter}, h.items,
        Harness::inOrder(), SortMode::sequential, true);
    ASSERT_EQ(ids.size(), 1);
    const QList<QUuid> slides = h.launch();
    EXPECT_TRUE(h.vm(0).useTransientSettings());
    EXPECT_FALSE(h.vm(1).useTransientSettings());
    const auto roles = [&h] {
        QList<CollageRole> result;
        for (int i = 0; i < h.manager.activeSlideshowIds().size(); ++i)
            result.append(h.vm(i).collageWall() ? h.vm(i).collageWall()->role() : CollageRole::independent);
        return result;
    };
    EXPECT_EQ(h.vm(0).collageLayout(), CollageLayout::scatter);
    using enum CollageRole;
    EXPECT_EQ(roles(), QList<CollageRole>({mirrorLeader, independent, independent}));
    h.vm(2).enterCollage(); // a wall that appears later takes its role too
    EXPECT_EQ(roles(), QList<CollageRole>({mirrorLeader, independent, mirrorFollower}));

    // Linked, the first window is a wall: the slide window still advances on time.
    h.manager.setControlScope(ControlScope::all);
    EXPECT_EQ(roles(), QList<CollageRole>({independent, independent, independent}));
    const QString before = h.shown(1);
    h.time.advance(5.0);
    EXPECT_NE(h.shown(1), before);

    h.manager.windowFocused(slides[1]);
    h.manager.setControlScope(ControlScope::mirrored);
    EXPECT_EQ(roles(), QList<CollageRole>({mirrorFollower, independent, mirrorLeader}));
    h.manager.windowClosed(slides[1]);
    EXPECT_EQ(roles(), QList<CollageRole>({mirrorLeader, independent}));
}

TEST(SlideshowManager, WindowOnlyActionsStayInTheirWindow)
{
    Harness h;
    const QList<QUuid> ids = h.launch();
    QList<QUuid> help;
    QObject::connect(&h.manager, &SlideshowManager::shortcutsRequested, [&help](const QUuid &id) { help.append(id); });
    h.manager.perform(ids[2], SlideshowAction::showHelp);
    h.manager.perform(ids[2], SlideshowAction::toggleFullScreen);
    EXPECT_EQ(help, QList<QUuid> {ids[2]});
    EXPECT_FALSE(h.windows.records[2]->fullScreen);
    EXPECT_FALSE(h.vm(2).isFullScreen());
    EXPECT_TRUE(h.windows.records[1]->fullScreen);
    h.manager.send(SlideshowCommand::stop);
    EXPECT_TRUE(h.manager.activeSlideshowIds().isEmpty());
    h.time.advance(0);
    EXPECT_EQ(h.time.pendingTimers(), 0u);
}

} // namespace
