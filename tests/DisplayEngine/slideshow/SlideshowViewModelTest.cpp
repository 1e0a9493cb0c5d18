#include "SlideshowTestHost.h"

#include "support/LogCapture.h"

#include "collage/CollageWallModel.h"
#include "slideshow/ImageClaimTracker.h"
#include "slideshow/SlideshowTransitionChoice.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace sorvane;
using namespace sorvane::test;

namespace {

enum class Op { increase, decrease, zoomIn, zoomOut };

TEST(SlideshowViewModel, IntervalStaysWithinOneToSixtySeconds)
{
    const struct {
        double start;
        Op op;
        double expected;
    } rows[] = {
        {60, Op::increase, 60},
        {59.5, Op::increase, 60},
        {5, Op::increase, 6},
        {1.5, Op::decrease, 1.0},
        {1, Op::decrease, 1},
        {2, Op::decrease, 1},
        {5, Op::decrease, 4},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.defaultDuration = row.start;
        auto model = rig.make(numberedItems(3), settings);
        row.op == Op::increase ? model->increaseInterval() : model->decreaseInterval();
        EXPECT_DOUBLE_EQ(model->slideDuration(), row.expected) << row.start;
        EXPECT_DOUBLE_EQ(model->settings().defaultDuration, row.expected);
    }
}

TEST(SlideshowViewModel, IntervalChangeReschedulesTheAdvance)
{
    SlideshowRig rig;
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::none;
    auto model = rig.make(numberedItems(3), settings);
    model->start();
    rig.time.advance(3);
    model->increaseInterval(); // 6 s from now
    rig.time.advance(5.9);
    EXPECT_EQ(model->currentIndex(), 0);
    rig.time.advance(0.2);
    EXPECT_EQ(model->currentIndex(), 1);
    model->setPaused(true);
    model->decreaseInterval();
    rig.time.advance(60);
    EXPECT_EQ(model->currentIndex(), 1);
}

TEST(SlideshowViewModel, SettingsChangedHereAreStoredUnlessTransient)
{
    const struct {
        bool transient;
        bool failWrites;
        bool stored;
        size_t warnings;
    } rows[] = {{false, false, true, 0}, {true, false, false, 0}, {false, true, false, 2}};
    for (const auto &row : rows) {
        SlideshowRig rig;
        rig.preferences.failWrites = row.failWrites;
        SlideshowSettings settings;
        settings.transitionStyle = TransitionStyle::none;
        auto model = rig.make(numberedItems(3), settings);
        model->setUseTransientSettings(row.transient);
        model->start();
        LogCapture log;
        model->increaseInterval();
        model->toggleTransitions();
        const std::vector<std::string> lines = log.take();
        EXPECT_EQ(lines.size(), row.warnings);
        SlideshowSettings expected = settings;
        expected.defaultDuration = 6;
        expected.transitionStyle = TransitionStyle::crossFade;
        EXPECT_EQ(model->settings(), expected);
        EXPECT_EQ(SlideshowSettings::load(rig.preferences) == expected, row.stored);
        rig.time.advance(6.01);
        EXPECT_EQ(model->currentIndex(), 1) << "the show goes on";
    }
}

TEST(SlideshowViewModel, ZoomStaysWithinItsBoundsAndShowsOrHidesControls)
{
    const struct {
        double pinchTo;
        bool preventPast1x;
        Op op;
        double expected;
        bool controlsAfter;
    } rows[] = {
        {4.5, true, Op::zoomIn, 5.0, true},
        {1.0, true, Op::zoomIn, 1.25, false},
        {5.0, true, Op::zoomIn, 5.0, true},
        {1.1, true, Op::zoomOut, 1.0, true},
        {1.1, false, Op::zoomOut, 0.88, false},
        {0.3, false, Op::zoomOut, 0.25, true},
        {2.0, true, Op::zoomOut, 1.6, true},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        rig.host.controlsAfterCommands = row.controlsAfter;
        SlideshowSettings settings;
        settings.preventZoomOutPast1x = row.preventPast1x;
        auto model = rig.make(numberedItems(2), settings);
        model->pinchChanged(row.pinchTo);
        model->pinchEnded();
        ASSERT_DOUBLE_EQ(model->zoomLevel(), row.pinchTo);
        row.op == Op::zoomIn ? model->zoomIn() : model->zoomOut();
        EXPECT_NEAR(model->zoomLevel(), row.expected, 1e-12) << row.pinchTo;
        EXPECT_DOUBLE_EQ(model->baseZoomLevel(), model->zoomLevel());
        EXPECT_EQ(model->showControls(), row.controlsAfter);
        rig.time.advance(settings.controlHideDelay + 0.01);
        EXPECT_FALSE(model->showControls());
    }
}

TEST(SlideshowViewModel, GesturesZoomAndPanWithinTheSameBounds)
{
    SlideshowRig rig;
    SlideshowSettings settings;
    settings.naturalScrollingForPan = true;
    auto model = rig.make(numberedItems(2), settings);
    model->pan(10, 10);
    EXPECT_TRUE(model->zoomOffset().isNull()) << "a fitted slide does not pan";
    model->smartZoom();
    EXPECT_DOUBLE_EQ(model->zoomLevel(), 2.0);
    model->pan(10, -4);
    EXPECT_EQ(model->zoomOffset(), QSizeF(-10, 4));
    model->scrollZoom(10000);
    EXPECT_DOUBLE_EQ(model->zoomLevel(), 5.0);
    model->scrollZoom(-50); // × 0.5
    EXPECT_DOUBLE_EQ(model->zoomLevel(), 2.5);
    model->smartZoom();
    EXPECT_DOUBLE_EQ(model->zoomLevel(), 1.0);
    EXPECT_TRUE(model->zoomOffset().isNull());
}

// Three windows over one tracker: every step lands on a file no other window shows.
TEST(SlideshowViewModel, LinkedWindowsNeverShowTheSameFile)
{
    enum Who { a, b, c };
    const struct {
        int items;
        bool avoidance;
        Who who;
        bool forward;
        std::array<int, 3> expected;
    } rows[] = {
        // Starting at the first item, later windows take the next free ones.
        {4, true, a, true, {3, 1, 2}},
        {4, true, b, false, {0, 3, 2}},
        {3, true, a, true, {0, 1, 2}}, // full circle: every other file is taken, the slide stays
        {3, false, a, true, {1, 0, 0}}, // off: every window plays plainly, duplicates and all
        {6, true, c, true, {0, 1, 3}},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        rig.preferences.setValue(QStringLiteral("slideshow.globalSettings.duplicateAvoidance"), row.avoidance);
        auto claims = std::make_shared<ImageClaimTracker>();
        std::unique_ptr<SlideshowViewModel> models[3];
        for (auto &model : models) {
            model = rig.make(numberedItems(row.items));
            model->setManager(nullptr, claims);
            model->start();
        }
        ASSERT_EQ(models[c]->currentIndex(), row.avoidance ? 2 : 0);
        const int left = models[row.who]->currentIndex();
        row.forward ? models[row.who]->next() : models[row.who]->previous();
        for (int w = a; w <= c; ++w)
            EXPECT_EQ(models[w]->currentIndex(), row.expected[size_t(w)]) << row.items << " window " << w;
        const bool moved = models[row.who]->currentIndex() != left;
        if (!row.avoidance)
            continue;
        EXPECT_EQ(claims->isClaimed(models[row.who]->images().at(left).url()), !moved) << "the slide left is free";
        EXPECT_EQ(claims->claimedCount(), 3);
        EXPECT_EQ(models[row.who]->imagesViewedInSession(), moved ? 2 : 1);
        models[row.who]->stop();
        EXPECT_EQ(claims->claimedCount(), 2);
    }
}

TEST(SlideshowViewModel, EndOfTheShowLoopsReshufflesOrStays)
{
    const struct {
        bool automatic;
        bool loop;
        bool reshuffle;
        SortMode mode;
        int expectedIndex;
        bool reshuffled;
    } rows[] = {
        {true, true, true, SortMode::random, 0, true},
        {false, true, true, SortMode::random, 0, false},
        {true, true, false, SortMode::random, 0, false},
        {true, true, true, SortMode::sequential, 0, false},
        {true, false, true, SortMode::random, 5, false},
        {false, false, false, SortMode::sequential, 5, false},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.loopSlideshow = row.loop;
        settings.reshuffleOnLoop = row.reshuffle;
        auto model = rig.make(numberedItems(6), settings, row.mode, 3);
        auto claims = std::make_shared<ImageClaimTracker>();
        model->setManager(nullptr, claims);
        model->start();
        for (int i = 0; i < 5; ++i)
            model->next();
        ASSERT_EQ(model->currentIndex(), 5);
        const QList<ImageItem> before = model->images();
        const QUrl leaving = before.at(5).url();
        model->next(row.automatic);
        EXPECT_EQ(model->currentIndex(), row.expectedIndex);
        EXPECT_EQ(model->images() != before, row.reshuffled);
        EXPECT_EQ(model->images().size(), 6);
        const bool moved = row.expectedIndex != 5;
        EXPECT_EQ(model->imagesViewedInSession(), moved ? 7 : 6);
        EXPECT_EQ(claims->claimedCount(), 1);
        EXPECT_TRUE(claims->isClaimed(model->currentItem()->url()));
        EXPECT_EQ(claims->isClaimed(leaving), !moved || model->currentItem()->url() == leaving);
    }
}

TEST(SlideshowViewModel, TransitionChoiceFollowsItsFiveRules)
{
    using S = TransitionStyle;
    ImageItem still(QUrl::fromLocalFile(QStringLiteral("/a.jpg")));
    ImageItem other(QUrl::fromLocalFile(QStringLiteral("/b.jpg")));
    ImageItem animated(QUrl::fromLocalFile(QStringLiteral("/c.gif")));
    animated.setAnimationType(AnimationType::gif);
    const struct {
        const ImageItem *incoming;
        const ImageItem *outgoing;
        S setting;
        bool fallback;
        bool reduce;
        quint64 draw;
        S expected;
    } rows[] = {
        {&animated, &still, S::slide, false, false, 0, S::none},
        {&still, &animated, S::crossFade, false, false, 0, S::none},
        {&still, &other, S::flip, true, false, 0, S::crossFade},
        {&still, &other, S::none, true, true, 0, S::none},
        {&still, &other, S::random, false, true, 0, S::crossFade},
        {&still, &other, S::kenBurns, false, true, 0, S::crossFade},
        {&still, &other, S::random, false, false, 0, S::kenBurns},
        {&still, &other, S::random, false, false, 1, S::slide},
        {&still, &other, S::random, false, false, 2, S::zoom},
        {&still, &other, S::random, false, false, 7, S::flip},
        {&still, &still, S::slide, false, false, 0, S::none},
        {&still, nullptr, S::zoom, false, false, 0, S::zoom},
    };
    for (const auto &row : rows) {
        const SlideshowTransitionChoice::Input input {
            *row.incoming, row.outgoing, row.setting, row.fallback, row.reduce};
        EXPECT_EQ(SlideshowTransitionChoice::choose(input, row.draw), row.expected) << toRaw(row.setting).toStdString();
    }
}

TEST(SlideshowViewModel, ANewTransitionSupersedesTheRunningOne)
{
    SlideshowRig rig;
    rig.host.reduceMotion = true;
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::slide; // a cross-fade over 0.6 s under reduced motion
    auto model = rig.make(numberedItems(3), settings);
    model->start();
    rig.time.advance(1);
    ASSERT_FALSE(model->isTransitioning());
    const bool firstLayer = model->isPrimaryLayerActive();
    model->next();
    EXPECT_EQ(model->activeTransitionStyle(), TransitionStyle::crossFade);
    EXPECT_EQ(model->transitionGeneration(), 2);
    rig.time.advance(0.3);
    EXPECT_NEAR(model->transitionProgress(), 0.5, 0.06);
    EXPECT_NEAR(model->primaryOpacity() + model->secondaryOpacity(), 1.0, 1e-9);
    model->next();
    // The superseded transition ended at once: the slide it brought in is the one leaving now.
    EXPECT_EQ(model->transitionGeneration(), 3);
    EXPECT_EQ(model->isPrimaryLayerActive(), !firstLayer);
    const auto &leaving = firstLayer ? model->secondaryImage() : model->primaryImage();
    ASSERT_TRUE(leaving.has_value());
    EXPECT_EQ(leaving->id(), model->images().at(1).id());
    EXPECT_LT(model->transitionProgress(), 0.01);
    rig.time.advance(0.62);
    EXPECT_FALSE(model->isTransitioning());
    EXPECT_EQ(model->isPrimaryLayerActive(), firstLayer);
    const auto &shown = firstLayer ? model->primaryImage() : model->secondaryImage();
    EXPECT_EQ(shown->id(), model->images().at(2).id());
    EXPECT_DOUBLE_EQ(firstLayer ? model->primaryOpacity() : model->secondaryOpacity(), 1.0);
    EXPECT_DOUBLE_EQ(firstLayer ? model->secondaryOpacity() : model->primaryOpacity(), 0.0);
    EXPECT_FALSE(firstLayer ? model->secondaryImage() : model->primaryImage());
}

TEST(SlideshowViewModel, KenBurnsDriftRunsThroughTheHoldAndWaitsWhilePaused)
{
    SlideshowRig rig;
    SlideshowSettings settings;
    settings.transitionStyle = TransitionStyle::kenBurns; // 0.6 s transition + 5 s hold = 5.6 s of drift
    auto model = rig.make(numberedItems(3), settings);
    model->start();
    rig.time.advance(1);
    const QSizeF first = model->kenBurnsVector();
    model->next();
    EXPECT_EQ(model->outgoingKenBurnsVector(), first);
    EXPECT_NEAR(std::hypot(model->kenBurnsVector().width(), model->kenBurnsVector().height()), 1.0, 1e-9);
    EXPECT_NE(model->kenBurnsVector(), first) << "each slide drifts its own way";
    rig.time.advance(2.8);
    EXPECT_NEAR(model->kenBurnsProgress(), 0.5, 0.01);
    model->setPaused(true);
    rig.time.advance(30);
    EXPECT_NEAR(model->kenBurnsProgress(), 0.5, 0.01);
    model->setPaused(false);
    rig.time.advance(2.9);
    EXPECT_DOUBLE_EQ(model->kenBurnsProgress(), 1.0);
    EXPECT_EQ(model->currentIndex(), 1);
}

TEST(SlideshowViewModel, StopAndDestructionLeaveNoTimerBehind)
{
    for (const bool destroy : {false, true}) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.transitionStyle = TransitionStyle::kenBurns;
        auto claims = std::make_shared<ImageClaimTracker>();
        auto model = rig.make(numberedItems(3), settings);
        model->setManager(nullptr, claims);
        model->start();
        model->revealControls();
        model->next();
        ASSERT_TRUE(model->isTransitioning());
        rig.time.advance(0.1);
        EXPECT_GT(model->kenBurnsProgress(), 0.0);
        model->moveCurrentToTrash(); // the host answers after the window is gone
        if (destroy)
            model.reset();
        else
            model->stop();
        EXPECT_EQ(rig.time.pendingTimers(), 0u);
        EXPECT_EQ(claims->claimedCount(), 0);
        rig.time.advance(10);
        rig.host.answer(HostShell::TrashOutcome::moved);
        EXPECT_EQ(claims->claimedCount(), 0);
        EXPECT_EQ(rig.time.pendingTimers(), 0u);
        if (!destroy)
            EXPECT_EQ(model->images().size(), 2);
    }
}

TEST(SlideshowViewModel, TogglingTransitionsRestoresTheStyle)
{
    const struct {
        TransitionStyle start;
        TransitionStyle off;
        TransitionStyle on;
    } rows[] = {
        {TransitionStyle::flip, TransitionStyle::none, TransitionStyle::flip},
        {TransitionStyle::random, TransitionStyle::none, TransitionStyle::random},
        {TransitionStyle::none, TransitionStyle::crossFade, TransitionStyle::none},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.transitionStyle = row.start;
        auto model = rig.make(numberedItems(2), settings);
        model->toggleTransitions();
        EXPECT_EQ(model->settings().transitionStyle, row.off);
        model->toggleTransitions();
        EXPECT_EQ(model->settings().transitionStyle, row.on);
    }
}

TEST(SlideshowViewModel, TrashRemovesTheFileOnlyWhenMoved)
{
    using Outcome = HostShell::TrashOutcome;
    const struct {
        Outcome outcome;
        int index;
        bool loop;
        int expectedCount;
        QString expectedShown;
    } rows[] = {
        {Outcome::moved, 1, true, 3, "img3.jpg"},
        {Outcome::moved, 3, true, 3, "img1.jpg"},
        {Outcome::moved, 3, false, 3, "img3.jpg"},
        {Outcome::cancelled, 1, true, 4, "img2.jpg"},
        {Outcome::failed, 1, true, 4, "img2.jpg"},
    };
    for (const auto &row : rows) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.loopSlideshow = row.loop;
        settings.transitionStyle = TransitionStyle::none;
        auto claims = std::make_shared<ImageClaimTracker>();
        QList<ImageItem> items = numberedItems(4);
        auto model = rig.make(items, settings);
        model->setManager(nullptr, claims);
        model->start();
        for (int i = 0; i < row.index; ++i)
            model->next();
        const QUrl trashed = model->currentItem()->url();
        model->moveCurrentToTrash();
        EXPECT_TRUE(model->isPaused()) << "paused while the host asks";
        rig.time.advance(30);
        EXPECT_EQ(model->currentIndex(), row.index);
        rig.host.answer(row.outcome);
        EXPECT_FALSE(model->isPaused());
        EXPECT_EQ(model->images().size(), row.expectedCount);
        EXPECT_EQ(model->currentItem()->url().fileName(), row.expectedShown);
        EXPECT_EQ(model->currentImageRealFilename(), row.expectedShown);
        EXPECT_EQ(claims->isClaimed(trashed), row.outcome != Outcome::moved);
        EXPECT_TRUE(claims->isClaimed(model->currentItem()->url()));
        EXPECT_EQ(claims->claimedCount(), 1);
        EXPECT_EQ(
            model->progressText(), QStringLiteral("%1 of %2").arg(model->currentIndex() + 1).arg(row.expectedCount));
    }
}

TEST(SlideshowViewModel, TrashTakesEveryListingOfTheFile)
{
    SlideshowRig rig;
    QList<ImageItem> items = numberedItems(3);
    items.append(ImageItem(items[0].url()));
    auto model = rig.make(items, {}, SortMode::sequential);
    model->start();
    model->moveCurrentToTrash();
    rig.host.answer(HostShell::TrashOutcome::moved);
    ASSERT_EQ(model->images().size(), 2);
    EXPECT_EQ(model->images()[0].url().fileName(), QStringLiteral("img2.jpg"));
    EXPECT_EQ(model->currentIndex(), 0);
    EXPECT_EQ(model->progressText(), QStringLiteral("1 of 2"));
}

TEST(SlideshowViewModel, AVideoHoldsTheAdvanceUntilItEnds)
{
    for (const bool fails : {false, true}) {
        SlideshowRig rig;
        SlideshowSettings settings;
        settings.transitionStyle = TransitionStyle::none;
        QList<ImageItem> items = numberedItems(3);
        items[1].setMediaType(MediaType::video);
        auto model = rig.make(items, settings);
        model->start();
        rig.time.advance(5.01);
        ASSERT_EQ(model->currentIndex(), 1);
        EXPECT_TRUE(model->isHeldByVideo());
        rig.time.advance(120);
        model->videoEnded(items[0].id().toString());
        model->itemFailed(items[2].id().toString());
        EXPECT_EQ(model->currentIndex(), 1) << "reports about other items change nothing";
        fails ? model->itemFailed(items[1].id().toString()) : model->videoEnded(items[1].id().toString());
        EXPECT_EQ(model->currentItem()->id(), items[2].id());
        EXPECT_EQ(model->images().size(), fails ? 2 : 3) << "an item that cannot be shown leaves the show";
        EXPECT_FALSE(model->isHeldByVideo());
        rig.time.advance(5.01);
        EXPECT_EQ(model->currentItem()->id(), items[0].id());
    }
}

TEST(SlideshowViewModel, CollageModeOpensAnItemAndReturnsToTheWall)
{
    SlideshowRig rig;
    auto claims = std::make_shared<ImageClaimTracker>();
    QList<ImageItem> items = numberedItems(8);
    auto model = rig.make(items);
    model->setManager(nullptr, claims);
    model->setCollageLayout(CollageLayout::collage);
    model->start();
    model->enterCollage();
    EXPECT_EQ(model->displayMode(), DisplayMode::collage);
    ASSERT_NE(model->collageWall(), nullptr);
    EXPECT_EQ(claims->claimedCount(), 0);
    model->openFromCollage(items[5].id().toString());
    EXPECT_EQ(model->displayMode(), DisplayMode::standard);
    EXPECT_EQ(model->currentIndex(), 5);
    EXPECT_TRUE(model->canReturnToCollage());
    EXPECT_TRUE(claims->isClaimed(items[5].url()));
    const qint64 generation = model->collagePoolGeneration();
    ASSERT_TRUE(model->collageWallSnapshot().has_value());
    EXPECT_FALSE(model->collageWallSnapshot()->slots.isEmpty());
    model->returnToCollage();
    EXPECT_EQ(model->displayMode(), DisplayMode::collage);
    EXPECT_EQ(model->collageWall()->wallState(), *model->collageWallSnapshot()) << "the wall left is restored";
    EXPECT_FALSE(model->canReturnToCollage());
    model->setImages(numberedItems(9));
    EXPECT_EQ(model->collagePoolGeneration(), generation + 1);
    EXPECT_EQ(model->collageWall()->poolGeneration(), generation + 1);
    model->stop();
    EXPECT_EQ(model->displayMode(), DisplayMode::standard);
    EXPECT_EQ(rig.time.pendingTimers(), 0u);
}

TEST(SlideshowViewModel, AContextMenuPausesOnlyAShowThatPlays)
{
    SlideshowRig rig;
    auto model = rig.make(numberedItems(2));
    model->setPausedForContextMenu(true);
    EXPECT_TRUE(model->isPaused());
    model->setPausedForContextMenu(false);
    EXPECT_FALSE(model->isPaused());
    model->setPaused(true);
    model->setPausedForContextMenu(true);
    model->setPausedForContextMenu(false);
    EXPECT_TRUE(model->isPaused()) << "a show the user paused stays paused";
}

} // namespace
