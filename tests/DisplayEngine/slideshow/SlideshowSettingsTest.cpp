#include "slideshow/SlideshowSettings.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/PreferenceStore.h"
#include "slideshow/SlideshowGlobalSettings.h"

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <functional>

namespace sorvane {
namespace {

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

TEST(SlideshowSettings, DecodesKeyByKeyWithTheLegacyCrossFadeRule)
{
    using Change = std::function<void(SlideshowSettings &)>;
    const auto style = [](TransitionStyle s) { return [s](SlideshowSettings &r) { r.transitionStyle = s; }; };
    const struct {
        const char *json;
        std::optional<Change> expected; // applied to the defaults; nothing: the record fails
    } cases[] = {
        {"{}", style(TransitionStyle::none)},
        {R"({"enableCrossFade": true})", style(TransitionStyle::crossFade)},
        {R"({"transitionStyle": "sparkle", "enableCrossFade": false})", style(TransitionStyle::none)},
        {R"({"transitionStyle": "sparkle", "enableCrossFade": true})", style(TransitionStyle::crossFade)},
        {R"({"transitionStyle": 3, "enableCrossFade": true})", style(TransitionStyle::crossFade)},
        {R"({"transitionStyle": "flip", "enableCrossFade": false})", style(TransitionStyle::flip)},
        {R"({"transitionStyle": "crossFade", "defaultDuration": 8, "imageScaling": "Fill Screen",
             "secondarySlideshowSortMode": "By Modified Date", "fileDisplayFormat": "Full Path",
             "imageSource": "Selected Images Only", "backgroundColor": "white", "newerSetting": [1]})",
            [](SlideshowSettings &r) {
                r.defaultDuration = 8;
                r.imageScaling = ImageScalingMode::fillScreen;
                r.secondarySlideshowSortMode = SortMode::modifiedDate;
                r.fileDisplayFormat = FileDisplayFormat::fullPath;
                r.imageSource = SlideshowImageSource::selectedSubset;
                r.backgroundColor = QStringLiteral("white");
            }},
        {R"({"transitionStyle": "none", "keyBindings": {"Next Image": {"key": "n", "modifiers": 1048576}}})",
            [](SlideshowSettings &r) {
                r.transitionStyle = TransitionStyle::none;
                r.keyBindings = {{QStringLiteral("Next Image"), {QStringLiteral("n"), KeyBinding::command}}};
            }},
        // A present key of the wrong type, or an enumeration label reworded, fails the whole record.
        {R"({"autoAdvance": "yes"})", std::nullopt},
        {R"({"defaultDuration": "5"})", std::nullopt},
        {R"({"imageScaling": "fit to screen"})", std::nullopt},
        {R"({"keyBindings": {"Next Image": {"key": "n"}}})", std::nullopt},
        {R"({"enableCrossFade": "yes"})", std::nullopt},
    };
    for (const auto &c : cases) {
        const std::optional<SlideshowSettings> decoded = SlideshowSettings::fromJson(object(c.json));
        ASSERT_EQ(decoded.has_value(), c.expected.has_value()) << c.json;
        if (!decoded)
            continue;
        SlideshowSettings expected;
        (*c.expected)(expected);
        EXPECT_TRUE(*decoded == expected) << c.json;
    }
}

TEST(SlideshowSettings, SavedAndLoadedThroughTheFileAndNothingStoredIsLostSilently)
{
    QTemporaryDir dir;
    SlideshowSettings changed;
    changed.transitionStyle = TransitionStyle::kenBurns;
    changed.imageScaling = ImageScalingMode::actualSize;
    changed.controlOpacity = 0.75;
    changed.keyBindings.remove(toRaw(SlideshowAction::moveToTrash));
    {
        PreferenceStore store(dir.path());
        // What a newer version added survives this version's save.
        ASSERT_EQ(store.setValue(SlideshowSettings::preferenceKey, object(R"({"newerSetting": 7})")), std::nullopt);
        ASSERT_EQ(changed.save(store), std::nullopt);
    }
    PreferenceStore store(dir.path());
    EXPECT_TRUE(SlideshowSettings::load(store) == changed);
    const QJsonObject stored = *store.objectValue(SlideshowSettings::preferenceKey);
    EXPECT_EQ(stored.value("newerSetting"), 7);
    EXPECT_EQ(stored.value("imageScaling"), "Actual Size") << "enumerations are stored as their labels";
    EXPECT_FALSE(stored.contains("enableCrossFade"));

    // A record that cannot be read gives the defaults, survives a save of another key,
    // and is kept aside when a save replaces it.
    const QString notJson = QStringLiteral("{transitionStyle: kenBurns");
    ASSERT_EQ(store.setValue(SlideshowSettings::preferenceKey, notJson), std::nullopt);
    EXPECT_TRUE(SlideshowSettings::load(store) == SlideshowSettings {});
    SlideshowGlobalSettings(store).setSyncMode(SyncMode::phased);
    EXPECT_EQ(PreferenceStore(dir.path()).stringValue(SlideshowSettings::preferenceKey), notJson);
    ASSERT_EQ(changed.save(store), std::nullopt);
    EXPECT_EQ(store.stringValue(SlideshowSettings::preferenceKey + ".unreadable"), notJson);
    EXPECT_TRUE(SlideshowSettings::load(store) == changed);
}

TEST(SlideshowGlobalSettings, ReadsEachKeyByItsRule)
{
    using G = SlideshowGlobalSettings;
    const struct {
        QList<Preferences::Entry> stored;
        ControlScope scope;
        EscBehavior esc;
        bool avoidDuplicates;
        SyncMode sync;
        double phaseDelay;
        bool divideEvenly;
        std::optional<quint32> firstScreen;
    } cases[] = {
        {{}, ControlScope::all, EscBehavior::stopAll, true, SyncMode::synchronized, 0.5, false, std::nullopt},
        {{{G::controlScopeKey, QStringLiteral("Mirror All")},
             {G::escBehaviorKey, QStringLiteral("Exit Fullscreen First")}, {G::duplicateAvoidanceKey, false},
             {G::syncModeKey, QStringLiteral("Phased")}, {G::phaseDelayKey, 0.05}, {G::phaseDelayDivideEvenlyKey, true},
             {G::firstMonitorScreenIDKey, qint64(4294967295)}},
            ControlScope::mirrored, EscBehavior::exitFullscreenFirst, false, SyncMode::phased, 0.1, true, 4294967295u},
        {{{G::controlScopeKey, QStringLiteral("mirror all")}, {G::escBehaviorKey, QStringLiteral("stopFocused")},
             {G::duplicateAvoidanceKey, qint64(0)}, {G::syncModeKey, QStringLiteral("phased")}, {G::phaseDelayKey, 7.0},
             {G::phaseDelayDivideEvenlyKey, QStringLiteral("true")}, {G::firstMonitorScreenIDKey, qint64(-1)}},
            ControlScope::all, EscBehavior::stopAll, true, SyncMode::synchronized, 5.0, false, std::nullopt},
        {{{G::phaseDelayKey, 0.1}, {G::controlScopeKey, QStringLiteral("This Slideshow")}}, ControlScope::focusedOnly,
            EscBehavior::stopAll, true, SyncMode::synchronized, 0.1, false, std::nullopt},
        {{{G::phaseDelayKey, QStringLiteral("soon")}}, ControlScope::all, EscBehavior::stopAll, true,
            SyncMode::synchronized, 0.5, false, std::nullopt},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        const auto &c = cases[i];
        InMemoryPreferences preferences;
        ASSERT_EQ(preferences.setValues(c.stored), std::nullopt);
        const G settings(preferences);
        EXPECT_EQ(settings.controlScope(), c.scope) << i;
        EXPECT_EQ(settings.escBehavior(), c.esc) << i;
        EXPECT_EQ(settings.duplicateAvoidance(), c.avoidDuplicates) << i;
        EXPECT_EQ(settings.syncMode(), c.sync) << i;
        EXPECT_DOUBLE_EQ(settings.phaseDelay(), c.phaseDelay) << i;
        EXPECT_EQ(settings.phaseDelayDivideEvenly(), c.divideEvenly) << i;
        EXPECT_EQ(settings.firstMonitorScreenID(), c.firstScreen) << i;
        EXPECT_FALSE(settings.hasShownMultiMonitorTip()) << i;
    }
}

TEST(SlideshowGlobalSettings, ChangesAreWrittenBackAndKeptInMemoryWhenTheFileCannotBeWritten)
{
    QTemporaryDir dir;
    using G = SlideshowGlobalSettings;
    {
        PreferenceStore store(dir.path());
        G settings(store);
        QSignalSpy scopeChanged(&settings, &G::controlScopeChanged);
        settings.setControlScope(ControlScope::mirrored);
        settings.setControlScope(ControlScope::mirrored);
        EXPECT_EQ(scopeChanged.count(), 1);
        settings.setEscBehavior(EscBehavior::stopFocused);
        settings.setPhaseDelay(9);
        settings.setFirstMonitorScreenID(7);
        settings.setHasShownMultiMonitorTip(true);
    }
    PreferenceStore store(dir.path());
    EXPECT_EQ(store.stringValue(G::controlScopeKey), "Mirror All");
    EXPECT_EQ(store.stringValue(G::escBehaviorKey), "Stop Current Slideshow");
    EXPECT_EQ(store.doubleValue(G::phaseDelayKey), 5.0);
    EXPECT_EQ(G(store).firstMonitorScreenID(), 7u);
    EXPECT_TRUE(G::storedMultiMonitorTipShown(store));

    // The preferences folder's place is taken by a file: nothing can be written.
    const QString blocked = dir.filePath(QStringLiteral("blocked"));
    ASSERT_TRUE(test::writeAll(blocked, "not a folder"));
    PreferenceStore unwritable(blocked);
    G settings(unwritable);
    settings.setSyncMode(SyncMode::phased);
    settings.setDuplicateAvoidance(false);
    EXPECT_EQ(settings.syncMode(), SyncMode::phased);
    EXPECT_FALSE(settings.duplicateAvoidance());
    EXPECT_FALSE(unwritable.contains(G::syncModeKey));
}

} // namespace
} // namespace sorvane
