#include "collage/CollageSlideshowSettings.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "bundle/BundleWireValues.h"
#include "collage/CollageLayout.h"
#include "slideshow/InMemoryPreferences.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace sorvane {
namespace {

using Settings = CollageSlideshowSettings;

const double nan = std::numeric_limits<double>::quiet_NaN();
const double inf = std::numeric_limits<double>::infinity();

// One stored key and what the loaded settings hold for it.
struct ReadRule {
    const char *key;
    PreferenceValue stored;
    std::function<bool(const Settings &)> holds;
    const char *what;
};

std::vector<ReadRule> readRules()
{
    auto layout = [](CollageLayout l) { return [l](const Settings &s) { return s.defaultLayout == l; }; };
    auto tiles = [](qint64 n) { return [n](const Settings &s) { return s.flowTilesPerChange == n; }; };
    auto columns = [](qint64 n) { return [n](const Settings &s) { return s.flowColumnAdjustment == n; }; };
    auto speed = [](double v) { return [v](const Settings &s) { return s.flowScrollSpeed == v; }; };
    auto pause = [](double v) { return [v](const Settings &s) { return s.flowScrollPointerPause == v; }; };
    auto weight = [](FlowWeightMode m) { return [m](const Settings &s) { return s.flowWeightMode == m; }; };
    auto orientation = [](FlowOrientation o) { return [o](const Settings &s) { return s.flowOrientation == o; }; };
    auto interval = [](double v) { return [v](const Settings &s) { return s.imageChangeInterval == v; }; };
    return {
        {"collage.defaultLayout", QStringLiteral("collage"), layout(CollageLayout::collage), "collage"},
        {"collage.defaultLayout", QStringLiteral("scatter"), layout(CollageLayout::scatter), "scatter"},
        {"collage.defaultLayout", QStringLiteral("Scatter"), layout(CollageLayout::flow), "case-sensitive"},
        {"collage.defaultLayout", QStringLiteral("varied"), layout(CollageLayout::flow), "manifest word"},
        {"collage.defaultLayout", qint64(2), layout(CollageLayout::flow), "not text"},
        {"collage.flowWeightMode", QStringLiteral("weighted"), weight(FlowWeightMode::weighted), "weighted"},
        {"collage.flowOrientation", QStringLiteral("horizontal"), orientation(FlowOrientation::horizontal), "h"},
        {"collage.flowOrientation", QStringLiteral("sideways"), orientation(FlowOrientation::vertical), "other"},
        {"collage.flowTilesPerChange", qint64(0), tiles(1), "0"},
        {"collage.flowTilesPerChange", qint64(40), tiles(40), "no upper bound"},
        {"collage.flowTilesPerChange", std::numeric_limits<qint64>::min(), tiles(1), "smallest"},
        {"collage.flowTilesPerChange", 5.0, tiles(5), "a whole double"},
        {"collage.flowTilesPerChange", 3.9, tiles(3), "a fraction truncates"},
        {"collage.flowTilesPerChange", 0.7, tiles(1), "truncated, then clamped"},
        {"collage.flowTilesPerChange", QStringLiteral(" 4 "), tiles(4), "number as text"},
        {"collage.flowTilesPerChange", nan, tiles(2), "nan"},
        {"collage.flowTilesPerChange", QStringLiteral("many"), tiles(2), "text"},
        {"collage.flowColumnAdjustment", -2.8, columns(-2), "negative fraction truncates"},
        {"collage.flowColumnAdjustment", 1e300, columns(6), "huge double"},
        {"collage.flowColumnAdjustment", -inf, columns(-6), "-inf"},
        {"collage.flowColumnAdjustment", qint64(9), columns(6), "9"},
        {"collage.flowColumnAdjustment", qint64(-40), columns(-6), "-40"},
        {"collage.flowColumnAdjustment", std::numeric_limits<qint64>::max(), columns(6), "largest"},
        {"collage.flowScrollSpeed", 100.0, speed(72), "100"},
        {"collage.flowScrollSpeed", 1.0, speed(6), "1"},
        {"collage.flowScrollSpeed", qint64(50), speed(50), "integer"},
        {"collage.flowScrollSpeed", nan, speed(18), "nan"},
        {"collage.flowScrollSpeed", true, speed(18), "not a number"},
        {"collage.flowScrollPointerPause", 7.0, pause(5), "7"},
        {"collage.flowScrollPointerPause", -1.0, pause(0), "-1"},
        {"collage.flowScrollPointerPause", nan, pause(0.5), "nan"},
        {"collage.flowScrollPointerPause", inf, pause(5), "inf"},
        {"collage.flowScrollPointerPause", qint64(1), pause(1), "integer"},
        {"collage.imageChangeInterval", 0.25, interval(0.25), "no clamp"},
        {"collage.imageChangeInterval", -3.0, interval(-3), "no clamp below"},
        {"collage.imageChangeInterval", QStringLiteral("7.5"), interval(7.5), "number as text"},
        {"collage.imageChangeInterval", QStringLiteral("7s"), interval(4), "text"},
        {"collage.flowScrollSpeed", QStringLiteral("100"), speed(72), "text, clamped"},
        {"collage.variedLayoutInterval", 12.5, [](const Settings &s) { return s.variedLayoutInterval == 12.5; }, ""},
        {"collage.shuffleVariedLayout", qint64(0), [](const Settings &s) { return s.shuffleVariedLayout; }, "int"},
        {"collage.flowAutoCycleTiles", QStringLiteral("true"), [](const Settings &s) { return !s.flowAutoCycleTiles; },
            "text"},
    };
}

TEST(CollageSlideshowSettings, EachKeyIsReadByItsRule)
{
    for (const ReadRule &rule : readRules()) {
        InMemoryPreferences preferences;
        ASSERT_EQ(preferences.setValue(QString::fromUtf8(rule.key), rule.stored), std::nullopt);
        EXPECT_TRUE(rule.holds(Settings::load(preferences))) << rule.key << " " << rule.what;
    }
}

TEST(CollageSlideshowSettings, SaveWritesAllFifteenKeysWithTheirTypes)
{
    Settings s;
    s.defaultLayout = CollageLayout::collage;
    s.imageChangeInterval = 4.0;
    s.shuffleVariedLayout = false;
    s.variedLayoutInterval = 30.0;
    s.showTileHoverControls = false;
    s.flowWeightMode = FlowWeightMode::weighted;
    s.flowOrientation = FlowOrientation::horizontal;
    s.flowTilesPerChange = 3;
    s.flowStaggerSwaps = false;
    s.flowColumnAdjustment = -2;
    s.flowInfiniteScroll = false;
    s.flowScrollBidirectional = false;
    s.flowScrollSpeed = 64.0;
    s.flowScrollPointerPause = 2.0;
    s.flowAutoCycleTiles = true;

    InMemoryPreferences preferences;
    ASSERT_EQ(s.save(preferences), std::nullopt);
    const std::vector<std::pair<const char *, PreferenceValue>> expected {
        {"collage.defaultLayout", QStringLiteral("collage")},
        {"collage.imageChangeInterval", 4.0},
        {"collage.shuffleVariedLayout", false},
        {"collage.variedLayoutInterval", 30.0},
        {"collage.showTileHoverControls", false},
        {"collage.flowWeightMode", QStringLiteral("weighted")},
        {"collage.flowOrientation", QStringLiteral("horizontal")},
        {"collage.flowTilesPerChange", qint64(3)},
        {"collage.flowStaggerSwaps", false},
        {"collage.flowColumnAdjustment", qint64(-2)},
        {"collage.flowInfiniteScroll", false},
        {"collage.flowScrollBidirectional", false},
        {"collage.flowScrollSpeed", 64.0},
        {"collage.flowScrollPointerPause", 2.0},
        {"collage.flowAutoCycleTiles", true},
    };
    EXPECT_EQ(preferences.keys().size(), qsizetype(expected.size()));
    for (const auto &[key, value] : expected)
        EXPECT_EQ(preferences.value(QString::fromUtf8(key)), value) << key;
    EXPECT_EQ(Settings::load(preferences), s);
}

TEST(CollageSlideshowSettings, ABundleGivesItsLayoutAndFlowValuesOverTheViewersOwn)
{
    Settings viewer;
    viewer.imageChangeInterval = 9.0;
    viewer.shuffleVariedLayout = false;
    viewer.flowTilesPerChange = 5;
    viewer.flowStaggerSwaps = false;
    viewer.flowScrollSpeed = 9.0;
    viewer.flowAutoCycleTiles = true;

    BundlePlaybackPreferences playback;
    playback.collageLayout = CollageLayout::scatter;
    playback.flow.orientation = FlowOrientation::horizontal;
    playback.flow.weightMode = FlowWeightMode::weighted;
    playback.flow.columnAdjustment = -20;
    playback.flow.scrollSpeed = 500.0;
    playback.flow.tilesPerChange = 0;
    playback.flow.infiniteScroll = false;
    playback.flow.bidirectionalScroll = false;

    const Settings s = Settings::forBundle(playback, viewer);
    EXPECT_EQ(s.defaultLayout, CollageLayout::scatter);
    EXPECT_EQ(s.flowOrientation, FlowOrientation::horizontal);
    EXPECT_EQ(s.flowWeightMode, FlowWeightMode::weighted);
    EXPECT_EQ(s.flowColumnAdjustment, -6);
    EXPECT_EQ(s.flowScrollSpeed, 72.0);
    EXPECT_EQ(s.flowTilesPerChange, 1);
    EXPECT_FALSE(s.flowInfiniteScroll);
    EXPECT_FALSE(s.flowScrollBidirectional);
    // Left out by the bundle: the viewer's own values.
    EXPECT_FALSE(s.flowStaggerSwaps);
    EXPECT_TRUE(s.flowAutoCycleTiles);
    EXPECT_EQ(s.imageChangeInterval, 9.0);
    EXPECT_FALSE(s.shuffleVariedLayout);

    playback.flow = {};
    playback.flow.staggerSwaps = true;
    playback.flow.autoCycleTiles = false;
    const Settings t = Settings::forBundle(playback, viewer);
    EXPECT_TRUE(t.flowStaggerSwaps);
    EXPECT_FALSE(t.flowAutoCycleTiles);
    EXPECT_EQ(t.flowTilesPerChange, 5);
    EXPECT_EQ(t.flowScrollSpeed, 9.0);
    EXPECT_EQ(t.flowColumnAdjustment, 0);
}

TEST(CollageEnums, StoredAndManifestWordsForTheVariedWallDiffer)
{
    // Stored settings say "collage", manifests say "varied": each reader only knows its own word.
    EXPECT_EQ(toRaw(CollageLayout::collage), QStringLiteral("collage"));
    EXPECT_EQ(toWire(CollageLayout::collage), QStringLiteral("varied"));
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("varied")), CollageLayout::collage);
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("collage")), std::nullopt);
    for (const char *raw : {"varied", "Collage", " flow", ""})
        EXPECT_EQ(fromRaw<CollageLayout>(QString::fromUtf8(raw)), std::nullopt) << raw;
    EXPECT_EQ(fromRaw<FlowOrientation>(QStringLiteral("Horizontal")), std::nullopt);
    EXPECT_EQ(fromRaw<FlowOrientation>(QStringLiteral("horizontal")), FlowOrientation::horizontal);
    EXPECT_EQ(fromRaw<FlowWeightMode>(QStringLiteral("weighted")), FlowWeightMode::weighted);
    EXPECT_EQ(fromRaw<FlowWeightMode>(QStringLiteral("Weighted")), std::nullopt);
    // The menu's words.
    EXPECT_EQ(label(FlowOrientation::vertical), QStringLiteral("Vertical"));
    EXPECT_EQ(label(FlowOrientation::horizontal), QStringLiteral("Horizontal"));
    EXPECT_EQ(label(CollageLayout::collage), QStringLiteral("Varied"));
    EXPECT_EQ(label(CollageLayout::flow), QStringLiteral("Flow"));
    EXPECT_EQ(label(CollageLayout::scatter), QStringLiteral("Scatter"));
}

} // namespace
} // namespace sorvane
