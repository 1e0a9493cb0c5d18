#include "collage/CollageSlideshowSettingsStore.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/PreferenceStore.h"

#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QTemporaryDir>

#include <functional>
#include <limits>
#include <map>

namespace sorvane {
namespace {

using Store = CollageSlideshowSettingsStore;
using Signal = void (Store::*)();

const QStringList allKeys {"collage.defaultLayout", "collage.imageChangeInterval", "collage.shuffleVariedLayout",
    "collage.variedLayoutInterval", "collage.showTileHoverControls", "collage.flowWeightMode",
    "collage.flowOrientation", "collage.flowTilesPerChange", "collage.flowStaggerSwaps", "collage.flowColumnAdjustment",
    "collage.flowInfiniteScroll", "collage.flowScrollBidirectional", "collage.flowScrollSpeed",
    "collage.flowScrollPointerPause", "collage.flowAutoCycleTiles"};

// Keeps every batch written, so a test sees exactly what one change wrote.
class RecordingPreferences final : public Preferences {
public:
    std::optional<PreferenceValue> value(const QString &key) const override { return m_values.value(key); }
    std::optional<QString> setValues(const QList<Entry> &entries) override
    {
        writes.append(entries);
        return m_values.setValues(entries);
    }
    std::optional<QString> remove(const QString &key) override { return m_values.remove(key); }

    QStringList keysOf(const QList<Entry> &batch) const
    {
        QStringList keys;
        for (const Entry &entry : batch)
            keys.append(entry.first);
        return keys;
    }

    QList<QList<Entry>> writes;

private:
    InMemoryPreferences m_values;
};

struct Notifier {
    const char *property;
    Signal signal;
};

const std::vector<Notifier> &notifiers()
{
    static const std::vector<Notifier> all {
        {"defaultLayout", &Store::defaultLayoutChanged},
        {"imageChangeInterval", &Store::imageChangeIntervalChanged},
        {"shuffleVariedLayout", &Store::shuffleVariedLayoutChanged},
        {"variedLayoutInterval", &Store::variedLayoutIntervalChanged},
        {"showTileHoverControls", &Store::showTileHoverControlsChanged},
        {"flowWeightMode", &Store::flowWeightModeChanged},
        {"flowOrientation", &Store::flowOrientationChanged},
        {"flowTilesPerChange", &Store::flowTilesPerChangeChanged},
        {"flowStaggerSwaps", &Store::flowStaggerSwapsChanged},
        {"flowColumnAdjustment", &Store::flowColumnAdjustmentChanged},
        {"flowInfiniteScroll", &Store::flowInfiniteScrollChanged},
        {"flowScrollBidirectional", &Store::flowScrollBidirectionalChanged},
        {"flowScrollSpeed", &Store::flowScrollSpeedChanged},
        {"flowScrollPointerPause", &Store::flowScrollPointerPauseChanged},
        {"flowAutoCycleTiles", &Store::flowAutoCycleTilesChanged},
        {"flowScrollReversed", &Store::flowScrollReversedChanged},
        {"flowScrollPaused", &Store::flowScrollPausedChanged},
    };
    return all;
}

class SignalCounter {
public:
    explicit SignalCounter(Store &store)
    {
        for (const Notifier &n : notifiers())
            QObject::connect(
                &store, n.signal, &m_context, [this, name = std::string(n.property)] { ++m_counts[name]; });
        QObject::connect(&store, &Store::settingsChanged, &m_context, [this] { ++m_counts["settings"]; });
    }
    const std::map<std::string, int> &counts() const { return m_counts; }

private:
    QObject m_context;
    std::map<std::string, int> m_counts;
};

// One stored field: how to change it, and what its key then holds.
struct FieldChange {
    const char *property;
    std::function<void(Store &)> change;
    const char *key;
    PreferenceValue stored;
};

std::vector<FieldChange> fieldChanges()
{
    return {
        {"defaultLayout", [](Store &s) { s.setDefaultLayout(CollageLayout::collage); }, "collage.defaultLayout",
            QStringLiteral("collage")},
        {"imageChangeInterval", [](Store &s) { s.setImageChangeInterval(0.5); }, "collage.imageChangeInterval", 0.5},
        {"shuffleVariedLayout", [](Store &s) { s.setShuffleVariedLayout(false); }, "collage.shuffleVariedLayout",
            false},
        {"variedLayoutInterval", [](Store &s) { s.setVariedLayoutInterval(120.0); }, "collage.variedLayoutInterval",
            120.0},
        {"showTileHoverControls", [](Store &s) { s.setShowTileHoverControls(false); }, "collage.showTileHoverControls",
            false},
        {"flowWeightMode", [](Store &s) { s.setFlowWeightMode(FlowWeightMode::weighted); }, "collage.flowWeightMode",
            QStringLiteral("weighted")},
        {"flowOrientation", [](Store &s) { s.setFlowOrientation(FlowOrientation::horizontal); },
            "collage.flowOrientation", QStringLiteral("horizontal")},
        {"flowTilesPerChange", [](Store &s) { s.setFlowTilesPerChange(-4); }, "collage.flowTilesPerChange", qint64(-4)},
        {"flowStaggerSwaps", [](Store &s) { s.setFlowStaggerSwaps(false); }, "collage.flowStaggerSwaps", false},
        {"flowColumnAdjustment", [](Store &s) { s.setFlowColumnAdjustment(11); }, "collage.flowColumnAdjustment",
            qint64(11)},
        {"flowInfiniteScroll", [](Store &s) { s.setFlowInfiniteScroll(false); }, "collage.flowInfiniteScroll", false},
        {"flowScrollBidirectional", [](Store &s) { s.setFlowScrollBidirectional(false); },
            "collage.flowScrollBidirectional", false},
        {"flowScrollSpeed", [](Store &s) { s.setFlowScrollSpeed(100.0); }, "collage.flowScrollSpeed", 100.0},
        {"flowScrollPointerPause", [](Store &s) { s.setFlowScrollPointerPause(2.0); }, "collage.flowScrollPointerPause",
            2.0},
        {"flowAutoCycleTiles", [](Store &s) { s.setFlowAutoCycleTiles(true); }, "collage.flowAutoCycleTiles", true},
    };
}

TEST(CollageSlideshowSettingsStore, ChangingOneFieldWritesAllFifteenKeysOnce)
{
    for (const FieldChange &row : fieldChanges()) {
        RecordingPreferences preferences;
        Store store(preferences);
        const SignalCounter counter(store);
        row.change(store);

        ASSERT_EQ(preferences.writes.size(), 1) << row.property;
        EXPECT_EQ(preferences.keysOf(preferences.writes.front()), allKeys) << row.property;
        EXPECT_EQ(preferences.value(QString::fromUtf8(row.key)), row.stored) << row.property;
        RecordingPreferences defaults;
        ASSERT_EQ(CollageSlideshowSettings {}.save(defaults), std::nullopt);
        for (const auto &[key, value] : preferences.writes.front()) {
            if (key != QString::fromUtf8(row.key))
                EXPECT_EQ(value, defaults.value(key)) << row.property << ": " << key.toStdString();
        }

        const std::map<std::string, int> expectedSignals {{row.property, 1}, {"settings", 1}};
        EXPECT_EQ(counter.counts(), expectedSignals) << row.property;

        // The same value again: stored again, nothing to tell observers.
        row.change(store);
        EXPECT_EQ(preferences.writes.size(), 2) << row.property;
        EXPECT_EQ(counter.counts(), expectedSignals) << row.property;
    }
}

TEST(CollageSlideshowSettingsStore, AdjustingColumnsStaysWithinSixEitherWayAndAlwaysStores)
{
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 least = std::numeric_limits<qint64>::min();
    struct Row {
        qint64 start, delta, expected;
    };
    const Row rows[] = {
        {0, 1, 1},
        {0, -1, -1},
        {2, 3, 5},
        {6, 1, 6},
        {-6, -1, -6},
        {5, -20, -6},
        {0, 0, 0},
        {6, most, 6},
        {-6, least, -6},
        {1, least, -6},
        {-1, most, 6},
        {100, -1, 6}, // set outside the bounds by a program
        {-100, 95, -5},
        {most, 1, 6},
        {least, -1, -6},
    };
    for (const Row &row : rows) {
        RecordingPreferences preferences;
        Store store(preferences);
        store.setFlowColumnAdjustment(row.start);
        preferences.writes.clear();

        store.adjustFlowColumns(row.delta);
        EXPECT_EQ(store.flowColumnAdjustment(), row.expected) << row.start << " by " << row.delta;
        ASSERT_EQ(preferences.writes.size(), 1) << row.start << " by " << row.delta;
        EXPECT_EQ(preferences.keysOf(preferences.writes.front()), allKeys);
        EXPECT_EQ(preferences.integerValue(QStringLiteral("collage.flowColumnAdjustment")), row.expected);
    }
}

TEST(CollageSlideshowSettingsStore, LabelsNameTheNearestPresetAndTiesKeepTheEarlier)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, const char *> speeds[]
        = {{13.5, "Slow"}, {13.6, "Normal"}, {50.0, "Fast"}, {50.1, "Faster"}, {27.0, "Normal"}, {27.1, "Fast"},
            {9.0, "Slow"}, {0.0, "Slow"}, {-5.0, "Slow"}, {18.0, "Normal"}, {1000.0, "Faster"}, {nan, "Slow"}};
    for (const auto &[speed, label] : speeds)
        EXPECT_EQ(Store::flowScrollSpeedLabel(speed), QString::fromUtf8(label)) << speed;

    const std::pair<double, const char *> pauses[]
        = {{0.25, "Never"}, {0.26, "Brief"}, {1.25, "Brief"}, {1.3, "Standard"}, {3.5, "Standard"}, {3.6, "Long"},
            {-1.0, "Never"}, {60.0, "Long"}, {0.5, "Brief"}, {nan, "Never"}};
    for (const auto &[pause, label] : pauses)
        EXPECT_EQ(Store::flowScrollPointerPauseLabel(pause), QString::fromUtf8(label)) << pause;
}

TEST(CollageSlideshowSettingsStore, ChangesOutliveTheRunButPerRunFlagsDoNot)
{
    QTemporaryDir folder;
    {
        PreferenceStore preferences(folder.path());
        Store store(preferences);
        store.setFlowOrientation(FlowOrientation::horizontal);
        store.adjustFlowColumns(-2);
        ASSERT_TRUE(store.selectFlowScrollSpeed(QStringLiteral("Faster")));
        store.toggle(Store::Flag::flowScrollPaused);
        store.toggle(Store::Flag::flowScrollReversed);
    }
    PreferenceStore preferences(folder.path());
    const Store store(preferences);
    EXPECT_EQ(store.flowOrientation(), FlowOrientation::horizontal);
    EXPECT_EQ(store.flowColumnAdjustment(), -2);
    EXPECT_EQ(store.flowScrollSpeed(), 64.0);
    EXPECT_FALSE(store.flowScrollPaused());
    EXPECT_FALSE(store.flowScrollReversed());
    for (const QString &key : allKeys)
        EXPECT_TRUE(preferences.contains(key)) << key.toStdString();
}

} // namespace
} // namespace sorvane
