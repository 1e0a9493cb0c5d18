#include "core/PlayerEngine.h"

#include "bundle/BundleReader.h"
#include "support/BundleFixture.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::BundleFixture;
using test::FakeTime;

// Records what the engine asks of the screens.
class RecordingSurface final : public PlayerSurface {
public:
    void show(const PlayerShownAsset &asset) override { shown.push_back(asset); }
    void pauseVideo() override { ++videoPauses; }
    void resumeVideo() override { ++videoResumes; }
    void presentStyle(PlayerStyle style) override { styles.push_back(style); }
    void stepWall(int step) override { wallSteps.push_back(step); }
    void preload(const PlayerShownAsset &asset) override { preloads.push_back(asset.itemId); }

    QStringList shownIds() const
    {
        QStringList ids;
        for (const auto &asset : shown)
            ids << asset.itemId;
        return ids;
    }

    std::vector<PlayerShownAsset> shown;
    std::vector<PlayerStyle> styles;
    std::vector<int> wallSteps;
    QStringList preloads;
    int videoPauses = 0;
    int videoResumes = 0;
};

class PlayerEngineTest : public testing::Test {
protected:
    // Photos "a", "b", "c" in manifest order, played sequentially every 4 seconds.
    void SetUp() override
    {
        for (const char *id : {"a", "b", "c"})
            fixture.addItem(id, {{"full", 8}});
        fixture.manifest.playback = BundlePlaybackJSON {};
        fixture.manifest.playback->sort = "sequential";
        fixture.manifest.playback->intervalSeconds = 4.0;
    }

    PlayerEngine &open(PlayerEngine::Start resume = {})
    {
        fixture.writeManifest();
        BundleOpenResult result = BundleReader::open(fixture.root());
        EXPECT_TRUE(result.ok());
        engine = std::make_unique<PlayerEngine>(result.bundle, surface, time,
            [this](qint64 position, std::optional<PlayerStyle> style) { saves.emplace_back(position, style); });
        engine->start(resume);
        return *engine;
    }

    void addVideo(const QString &id, std::optional<double> duration, bool withPoster = true)
    {
        BundleItem &item = withPoster ? fixture.addItem(id, {{"video", 10}, {"full", 6}}, "video")
                                      : fixture.addItem(id, {{"video", 10}}, "video");
        item.assets[0].second.durationSeconds = duration;
    }

    BundleFixture fixture;
    FakeTime time;
    RecordingSurface surface;
    std::vector<std::pair<qint64, std::optional<PlayerStyle>>> saves;
    std::unique_ptr<PlayerEngine> engine;
};

TEST(PlayerEngineHold, IntervalsAreClampedAndVideosHoldForTheirLength)
{
    struct Case {
        std::optional<double> interval;
        QString tier;
        std::optional<double> duration;
        double hold;
    };
    const Case cases[] = {
        {0.2, "full", std::nullopt, 1.0},
        {900, "full", std::nullopt, 300.0},
        {std::nullopt, "full", std::nullopt, 5.0},
        {5, "video", 10.0, 12.0},
        {5, "video", std::nullopt, 5.0},
        {5, "video", 400.0, 300.0},
        {5, "full", 10.0, 5.0},
    };
    for (const Case &c : cases) {
        BundlePlaybackPreferences playback;
        playback.intervalSeconds = c.interval;
        BundleResolvedAsset shown;
        shown.key = c.tier;
        shown.asset.durationSeconds = c.duration;
        EXPECT_DOUBLE_EQ(PlayerEngine::holdSeconds(playback, &shown), c.hold)
            << qPrintable(c.tier) << " " << c.interval.value_or(-1);
    }
}

TEST_F(PlayerEngineTest, AdvancesAfterEachHoldAndWrapsEvenWithoutLoop)
{
    fixture.manifest.playback->loop = false;
    open();
    EXPECT_EQ(surface.shownIds(), QStringList {"a"});
    time.advance(3.9);
    EXPECT_EQ(surface.shownIds(), QStringList {"a"});
    time.advance(0.1);
    time.advance(8.0);
    EXPECT_EQ(surface.shownIds(), (QStringList {"a", "b", "c", "a"}));
    EXPECT_EQ(engine->position(), 0);
    EXPECT_DOUBLE_EQ(engine->lastScheduledHold(), 4.0);
    // Every show saves where playback stands.
    EXPECT_EQ(saves.size(), 4u);
    EXPECT_EQ(saves[2].first, 2);
}

TEST_F(PlayerEngineTest, StepsWrapBothWaysAndStayPausedWhilePaused)
{
    open();
    engine->previous();
    EXPECT_EQ(surface.shownIds().last(), "c");
    engine->next();
    EXPECT_EQ(surface.shownIds().last(), "a");

    engine->togglePause();
    EXPECT_TRUE(engine->paused());
    EXPECT_EQ(time.pendingTimers(), 0u);
    engine->next();
    EXPECT_EQ(surface.shownIds().last(), "b");
    EXPECT_EQ(time.pendingTimers(), 0u); // still paused: nothing will advance
    EXPECT_EQ(surface.videoPauses, 2);
    time.advance(60);
    EXPECT_EQ(surface.shownIds().last(), "b");

    engine->togglePause();
    EXPECT_FALSE(engine->paused());
    EXPECT_EQ(surface.videoResumes, 1);
    time.advance(4.0);
    EXPECT_EQ(surface.shownIds().last(), "c");
}

TEST_F(PlayerEngineTest, AVideoHoldsForItsLengthAndAdvancesWhenItEnds)
{
    addVideo("v", 10.0);
    open({1, std::nullopt}); // b, then c, then v
    time.advance(8.0);
    ASSERT_EQ(surface.shown.back().itemId, "v");
    EXPECT_TRUE(surface.shown.back().isVideo);
    EXPECT_EQ(surface.shown.back().tier, "video");
    EXPECT_DOUBLE_EQ(engine->lastScheduledHold(), 12.0);
    time.advance(3.0);
    engine->videoEnded(); // before its hold runs out
    EXPECT_EQ(surface.shown.back().itemId, "a");
    EXPECT_DOUBLE_EQ(engine->lastScheduledHold(), 4.0);
}

TEST_F(PlayerEngineTest, AFailingVideoFallsToItsPosterThenLeavesThePlayOrder)
{
    addVideo("v", 6.0);
    open({3, std::nullopt});
    ASSERT_EQ(surface.shown.back().tier, "video");
    engine->videoFailed();
    // The poster is shown in its place; the position stays.
    EXPECT_EQ(surface.shown.back().itemId, "v");
    EXPECT_EQ(surface.shown.back().tier, "full");
    EXPECT_EQ(engine->position(), 3);
    EXPECT_EQ(engine->itemCount(), 4);
    EXPECT_EQ(engine->bundle().reports().size(), 1u);

    // If the poster fails too, the item leaves the play order and the next one shows.
    engine->videoFailed();
    EXPECT_EQ(engine->itemCount(), 3);
    EXPECT_EQ(engine->position(), 0);
    EXPECT_EQ(surface.shown.back().itemId, "a");
}

TEST(PlayerEngineLastItem, AVideoThatCannotPlayAtAllStopsOnTheLastPicture)
{
    BundleFixture fixture;
    BundleItem &item = fixture.addItem("v", {{"video", 10}}, "video");
    item.assets[0].second.durationSeconds = 3.0;
    fixture.writeManifest();
    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    FakeTime time;
    RecordingSurface surface;
    PlayerEngine engine(result.bundle, surface, time);
    engine.start();
    ASSERT_EQ(surface.shown.size(), 1u);
    engine.videoFailed();
    EXPECT_EQ(engine.itemCount(), 0);
    EXPECT_EQ(time.pendingTimers(), 0u);
    EXPECT_EQ(surface.shown.size(), 1u);
    engine.next(); // nothing to step to
    time.advance(600);
    EXPECT_EQ(surface.shown.size(), 1u);
    ASSERT_EQ(result.integrity->missingItems.size(), 1u);
}

TEST_F(PlayerEngineTest, StylesAreSavedRestoredAndStepTheWall)
{
    open();
    engine->chooseStyle(PlayerStyle::classic); // the same style: nothing happens
    EXPECT_EQ(surface.styles.size(), 1u);
    engine->chooseStyle(PlayerStyle::photoWall);
    EXPECT_EQ(surface.styles.back(), PlayerStyle::photoWall);
    EXPECT_EQ(saves.back(), (std::pair<qint64, std::optional<PlayerStyle>> {0, PlayerStyle::photoWall}));
    EXPECT_EQ(time.pendingTimers(), 0u); // the wall runs itself
    engine->next();
    engine->previous();
    EXPECT_EQ(surface.wallSteps, (std::vector<int> {1, -1}));
    EXPECT_EQ(engine->position(), 0);

    engine->chooseStyle(PlayerStyle::classic);
    EXPECT_EQ(surface.shown.back().itemId, "a");
    EXPECT_EQ(time.pendingTimers(), 1u);

    // A later run starts in the saved style, and keeps saving it.
    surface = RecordingSurface();
    open({1, PlayerStyle::memoryTable});
    EXPECT_EQ(engine->style(), PlayerStyle::memoryTable);
    EXPECT_EQ(surface.styles, std::vector<PlayerStyle> {PlayerStyle::memoryTable});
    engine->chooseStyle(PlayerStyle::classic);
    EXPECT_EQ(saves.back(), (std::pair<qint64, std::optional<PlayerStyle>> {1, PlayerStyle::classic}));
}

TEST_F(PlayerEngineTest, AWallStyleShowsNoItemAndKeepsNoTimer)
{
    open({1, PlayerStyle::photoWall});
    EXPECT_TRUE(surface.shown.empty()) << "the wall draws itself";
    EXPECT_EQ(time.pendingTimers(), 0u);
    engine->togglePause();
    engine->togglePause();
    EXPECT_EQ(time.pendingTimers(), 0u) << "resuming a wall schedules no item";
    EXPECT_EQ(surface.videoPauses, 1);
    // A late report from a video that was on screen before the wall changes nothing.
    engine->videoEnded();
    engine->videoFailed();
    EXPECT_EQ(engine->position(), 1);
    EXPECT_EQ(engine->itemCount(), 3);
}

} // namespace
} // namespace sorvane
