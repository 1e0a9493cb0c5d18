#include "collage/CollageSlideshowSettings.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "collage/CollageLayout.h"
#include "slideshow/InMemoryPreferences.h"

#include <gtest/gtest.h>

#include <limits>

namespace sorvane {
namespace {

using Settings = CollageSlideshowSettings;

const double nan = std::numeric_limits<double>::quiet_NaN();
const double inf = std::numeric_limits<double>::infinity();

// What the settings hold for `key` once loaded, as they write it back.
PreferenceValue loadedValue(const Settings &settings, const char *key)
{
    InMemoryPreferences written;
    EXPECT_EQ(settings.save(written), std::nullopt);
    return written.value(QString::fromUtf8(key)).value_or(QString());
}

TEST(CollageSlideshowSettings, EachStoredValueIsReadTruncatedAndClampedOrDefaulted)
{
    const struct {
        const char *key;
        PreferenceValue stored;
        PreferenceValue loaded;
    } rows[] = {
        {"collage.defaultLayout", QStringLiteral("scatter"), QStringLiteral("scatter")},
        {"collage.defaultLayout", QStringLiteral("Scatter"), QStringLiteral("flow")}, // case-sensitive
        {"collage.defaultLayout", QStringLiteral("varied"), QStringLiteral("flow")}, // the manifest's word
        {"collage.flowWeightMode", QStringLiteral("weighted"), QStringLiteral("weighted")},
        {"collage.flowWeightMode", QStringLiteral("Weighted"), QStringLiteral("proportional")},
        {"collage.flowOrientation", QStringLiteral("Horizontal"), QStringLiteral("vertical")},
        {"collage.flowTilesPerChange", qint64(0), qint64(1)},
        {"collage.flowTilesPerChange", 3.9, qint64(3)}, // a fraction truncates
        {"collage.flowTilesPerChange", QStringLiteral(" 4 "), qint64(4)}, // a number as text
        {"collage.flowTilesPerChange", nan, qint64(2)},
        {"collage.flowColumnAdjustment", -2.8, qint64(-2)},
        {"collage.flowColumnAdjustment", 1e300, qint64(6)},
        {"collage.flowColumnAdjustment", std::numeric_limits<qint64>::max(), qint64(6)},
        {"collage.flowScrollSpeed", 1.0, 6.0},
        {"collage.flowScrollSpeed", QStringLiteral("100"), 72.0},
        {"collage.flowScrollSpeed", nan, 18.0},
        {"collage.flowScrollPointerPause", inf, 5.0},
        {"collage.imageChangeInterval", -3.0, -3.0}, // no clamp
        {"collage.imageChangeInterval", QStringLiteral("7s"), 4.0},
        {"collage.shuffleVariedLayout", qint64(0), true},
        {"collage.flowAutoCycleTiles", QStringLiteral("true"), false},
        {"collage.variedLayoutInterval", 30.0, 30.0},
        {"collage.showTileHoverControls", false, false},
        {"collage.flowStaggerSwaps", false, false},
        {"collage.flowInfiniteScroll", false, false},
        {"collage.flowScrollBidirectional", false, false},
    };
    for (const auto &row : rows) {
        InMemoryPreferences preferences;
        ASSERT_EQ(preferences.setValue(QString::fromUtf8(row.key), row.stored), std::nullopt);
        EXPECT_EQ(loadedValue(Settings::load(preferences), row.key), row.loaded)
            << row.key << " " << row.stored.index();
    }
}

TEST(CollageSlideshowSettings, ABundleGivesItsLayoutAndFlowValuesOverTheViewersOwn)
{
    Settings viewer;
    viewer.imageChangeInterval = 9.0;
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
    // Clamped; left out by the bundle, the viewer's own values.
    Settings expected = viewer;
    expected.defaultLayout = CollageLayout::scatter;
    expected.flowOrientation = FlowOrientation::horizontal;
    expected.flowWeightMode = FlowWeightMode::weighted;
    expected.flowColumnAdjustment = -6;
    expected.flowScrollSpeed = 72.0;
    expected.flowTilesPerChange = 1;
    expected.flowInfiniteScroll = false;
    expected.flowScrollBidirectional = false;
    EXPECT_EQ(Settings::forBundle(playback, viewer), expected);

    playback.flow = {};
    playback.flow.staggerSwaps = true;
    playback.flow.autoCycleTiles = false;
    expected = viewer;
    expected.defaultLayout = CollageLayout::scatter;
    expected.flowStaggerSwaps = true;
    expected.flowAutoCycleTiles = false;
    EXPECT_EQ(Settings::forBundle(playback, viewer), expected);
}

} // namespace
} // namespace sorvane
