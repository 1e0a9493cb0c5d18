#include "collage/CollageSlideshowSettingsStore.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/PreferenceStore.h"

#include <gtest/gtest.h>

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <functional>
#include <limits>

namespace sorvane {
namespace {

using Store = CollageSlideshowSettingsStore;

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
        QStringList keys;
        for (const Entry &entry : entries)
            keys.append(entry.first);
        writes.append(keys);
        return m_values.setValues(entries);
    }
    std::optional<QString> remove(const QString &key) override { return m_values.remove(key); }

    QList<QStringList> writes; // the keys of each batch
private:
    InMemoryPreferences m_values;
};

// Every change writes the whole set of keys in one batch and tells the property's own observers
// and the settings' observers once; the same value again is stored but told to no one.
TEST(CollageSlideshowSettingsStore, ChangingOneFieldWritesAllKeysOnceAndNotifiesIt)
{
    struct Row {
        const char *property;
        std::function<void(Store &)> change;
        PreferenceValue stored;
    };
    const Row rows[] = {
        {"defaultLayout", [](Store &s) { s.setDefaultLayout(CollageLayout::collage); }, QStringLiteral("collage")},
        {"imageChangeInterval", [](Store &s) { s.setImageChangeInterval(0.5); }, 0.5},
        {"showTileHoverControls", [](Store &s) { s.setShowTileHoverControls(false); }, false},
        {"flowWeightMode", [](Store &s) { s.setFlowWeightMode(FlowWeightMode::weighted); }, QStringLiteral("weighted")},
        {"flowTilesPerChange", [](Store &s) { s.setFlowTilesPerChange(-4); }, qint64(-4)},
        {"flowScrollSpeed", [](Store &s) { s.setFlowScrollSpeed(100.0); }, 100.0},
        {"flowAutoCycleTiles", [](Store &s) { s.toggle(Store::Flag::flowAutoCycleTiles); }, true},
        {"variedLayoutInterval", [](Store &s) { s.setVariedLayoutInterval(120.0); }, 120.0},
        {"flowOrientation", [](Store &s) { s.setFlowOrientation(FlowOrientation::horizontal); },
            QStringLiteral("horizontal")},
        {"shuffleVariedLayout", [](Store &s) { s.toggle(Store::Flag::shuffleVariedLayout); }, false},
        {"flowStaggerSwaps", [](Store &s) { s.toggle(Store::Flag::flowStaggerSwaps); }, false},
        {"flowInfiniteScroll", [](Store &s) { s.toggle(Store::Flag::flowInfiniteScroll); }, false},
        {"flowScrollBidirectional", [](Store &s) { s.toggle(Store::Flag::flowScrollBidirectional); }, false},
        {"flowScrollPointerPause", [](Store &s) { s.selectFlowScrollPointerPause(QStringLiteral("Long")); }, 5.0},
    };
    for (const Row &row : rows) {
        RecordingPreferences preferences;
        Store store(preferences);
        const QMetaProperty property = store.metaObject()->property(store.metaObject()->indexOfProperty(row.property));
        ASSERT_TRUE(property.hasNotifySignal()) << row.property;
        QSignalSpy own(&store, property.notifySignal());
        QSignalSpy settings(&store, &Store::settingsChanged);
        row.change(store);

        EXPECT_EQ(preferences.writes, QList<QStringList> {allKeys}) << row.property;
        EXPECT_EQ(preferences.value("collage." + QString::fromUtf8(row.property)), row.stored) << row.property;
        EXPECT_EQ(own.count(), 1) << row.property;
        EXPECT_EQ(settings.count(), 1) << row.property;
    }
    RecordingPreferences preferences;
    Store store(preferences);
    QSignalSpy settings(&store, &Store::settingsChanged);
    store.setFlowScrollSpeed(store.flowScrollSpeed());
    EXPECT_EQ(preferences.writes.size(), 1);
    EXPECT_EQ(settings.count(), 0);
    // Whole settings are written once, and each changed member is told.
    CollageSlideshowSettings wanted = store.settings();
    wanted.defaultLayout = CollageLayout::collage;
    wanted.showTileHoverControls = false;
    QSignalSpy layout(&store, &Store::defaultLayoutChanged);
    store.setSettings(wanted);
    EXPECT_EQ(store.settings(), wanted);
    EXPECT_EQ(CollageSlideshowSettings::load(preferences), wanted);
    EXPECT_EQ(preferences.writes.size(), 2);
    EXPECT_EQ(layout.count(), 1);
    EXPECT_EQ(settings.count(), 1);
    // Unknown labels change nothing.
    EXPECT_FALSE(store.selectFlowScrollSpeed(QStringLiteral("fast")));
    EXPECT_FALSE(store.selectFlowScrollPointerPause(QStringLiteral("Long ")));
    EXPECT_EQ(preferences.writes.size(), 2);
}

TEST(CollageSlideshowSettingsStore, LabelsNameTheNearestPresetAndTiesKeepTheEarlier)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, const char *> speeds[] = {{13.5, "Slow"}, {13.6, "Normal"}, {50.0, "Fast"},
        {50.1, "Faster"}, {27.0, "Normal"}, {-5.0, "Slow"}, {1000.0, "Faster"}, {nan, "Slow"}};
    for (const auto &[speed, label] : speeds)
        EXPECT_EQ(Store::flowScrollSpeedLabel(speed), QString::fromUtf8(label)) << speed;
    const std::pair<double, const char *> pauses[] = {{0.25, "Never"}, {0.26, "Brief"}, {1.3, "Standard"},
        {3.5, "Standard"}, {3.6, "Long"}, {-1.0, "Never"}, {nan, "Never"}};
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
        store.setDefaultLayout(CollageLayout::scatter);
        store.toggle(Store::Flag::showTileHoverControls);
        store.adjustFlowColumns(-2);
        ASSERT_TRUE(store.selectFlowScrollSpeed(QStringLiteral("Faster")));
        ASSERT_TRUE(store.selectFlowScrollPointerPause(QStringLiteral("Standard")));
        store.toggle(Store::Flag::flowScrollPaused);
        store.toggle(Store::Flag::flowScrollReversed);
        EXPECT_TRUE(store.flowScrollPaused() && store.flowScrollReversed());
    }
    PreferenceStore preferences(folder.path());
    const Store store(preferences);
    EXPECT_EQ(store.flowOrientation(), FlowOrientation::horizontal);
    EXPECT_EQ(store.defaultLayout(), CollageLayout::scatter);
    EXPECT_FALSE(store.showTileHoverControls());
    EXPECT_EQ(store.flowColumnAdjustment(), -2);
    EXPECT_EQ(store.flowScrollSpeed(), 64.0);
    EXPECT_EQ(store.flowScrollPointerPause(), 2.0);
    EXPECT_FALSE(store.flowScrollPaused());
    EXPECT_FALSE(store.flowScrollReversed());
    for (const QString &key : allKeys)
        EXPECT_TRUE(preferences.contains(key)) << key.toStdString();
}

} // namespace
} // namespace sorvane
