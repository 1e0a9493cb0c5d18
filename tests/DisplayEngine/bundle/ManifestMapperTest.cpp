#include "bundle/BundleManifest.h"
#include "bundle/BundleManifestMapper.h"
#include "bundle/BundleWireValues.h"

#include <gtest/gtest.h>

#include <QJsonDocument>

#include <cctype>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using namespace sorvane;

namespace {

struct Mapped {
    BundlePlaybackPreferences playback;
    BundleDisplayPreferences display;
    OverlayCorner corner = OverlayCorner::topLeft;
    std::vector<BundleReport> reports;
};

// The reader's sequence: playback, then display, then the overlay corner, into one list.
Mapped mapAll(const BundleManifest &manifest)
{
    Mapped out;
    out.playback = BundleManifestMapper::playback(manifest, out.reports);
    out.display = BundleManifestMapper::display(manifest, out.reports);
    out.corner = BundleManifestMapper::overlayCorner(manifest, out.reports);
    return out;
}

BundleManifest manifestFromText(const char *json)
{
    return BundleManifest::fromJson(QJsonDocument::fromJson(QByteArray(json)).object());
}

using Value = std::optional<QString>;

// One enumerated manifest key: where it lives, how its typed result is read back (as the wire
// value it writes), its wire values and its default.
struct EnumKey {
    const char *fieldPath;
    void (*set)(BundleManifest &, const Value &);
    QString (*get)(const Mapped &);
    std::vector<const char *> cases;
    const char *defaultWire;
};

BundleFlowJSON &flowOf(BundleManifest &m)
{
    return m.playback.emplace().flow.emplace();
}

void setPerScreen(BundleManifest &m, const Value &mode, const Value &layout)
{
    BundlePerScreenJSON screen;
    screen.screenOrdinal = 0;
    screen.preferredMode = mode;
    screen.preferredCollageLayout = layout;
    m.display.emplace().preferredPerScreen = std::vector<BundlePerScreenJSON> {screen};
}

const BundlePerScreenPreference &onlyScreen(const Mapped &r)
{
    static const BundlePerScreenPreference none;
    EXPECT_EQ(r.display.preferredPerScreen.size(), 1u);
    return r.display.preferredPerScreen.empty() ? none : r.display.preferredPerScreen.front();
}

const std::vector<EnumKey> &enumKeys()
{
    static const std::vector<EnumKey> keys = {
        {"playback.mode", [](BundleManifest &m, const Value &v) { m.playback.emplace().mode = v; },
            [](const Mapped &r) { return toWire(r.playback.mode); }, {"standard", "collage"}, "standard"},
        {"playback.collage_layout", [](BundleManifest &m, const Value &v) { m.playback.emplace().collageLayout = v; },
            [](const Mapped &r) { return toWire(r.playback.collageLayout); }, {"flow", "scatter", "varied"}, "flow"},
        {"playback.sort", [](BundleManifest &m, const Value &v) { m.playback.emplace().sort = v; },
            [](const Mapped &r) { return toWire(r.playback.sort); }, {"random", "sequential", "created", "modified"},
            "random"},
        {"playback.image_scaling", [](BundleManifest &m, const Value &v) { m.playback.emplace().imageScaling = v; },
            [](const Mapped &r) { return toWire(r.playback.imageScaling); },
            {"fit_to_screen", "fill_screen", "actual_size"}, "fit_to_screen"},
        {"playback.background", [](BundleManifest &m, const Value &v) { m.playback.emplace().background = v; },
            [](const Mapped &r) { return toWire(r.playback.background); }, {"black", "dark_gray"}, "black"},
        {"playback.image_filter", [](BundleManifest &m, const Value &v) { m.playback.emplace().imageFilter = v; },
            [](const Mapped &r) { return toWire(r.playback.imageFilter); },
            {"none", "black_and_white", "sepia", "vintage"}, "none"},
        {"playback.file_display_format",
            [](BundleManifest &m, const Value &v) { m.playback.emplace().fileDisplayFormat = v; },
            [](const Mapped &r) { return toWire(r.playback.fileDisplayFormat); },
            {"filename_only", "relative_path", "absolute_path", "parent_plus_filename"}, "filename_only"},
        {"playback.flow.orientation", [](BundleManifest &m, const Value &v) { flowOf(m).orientation = v; },
            [](const Mapped &r) { return toWire(r.playback.flow.orientation); }, {"vertical", "horizontal"},
            "vertical"},
        {"playback.flow.weight_mode", [](BundleManifest &m, const Value &v) { flowOf(m).weightMode = v; },
            [](const Mapped &r) { return toWire(r.playback.flow.weightMode); }, {"proportional", "weighted"},
            "proportional"},
        {"display.preferred_control_scope",
            [](BundleManifest &m, const Value &v) { m.display.emplace().preferredControlScope = v; },
            [](const Mapped &r) { return toWire(r.display.preferredControlScope); },
            {"independent", "linked", "mirrored"}, "independent"},
        {"display.preferred_sync_mode",
            [](BundleManifest &m, const Value &v) { m.display.emplace().preferredSyncMode = v; },
            [](const Mapped &r) { return toWire(r.display.preferredSyncMode); }, {"synchronized", "phased"},
            "synchronized"},
        {"display.preferred_per_screen[].preferred_mode",
            [](BundleManifest &m, const Value &v) { setPerScreen(m, v, std::nullopt); },
            [](const Mapped &r) { return toWire(onlyScreen(r).preferredMode); }, {"standard", "collage"}, "standard"},
        {"display.preferred_per_screen[].preferred_collage_layout",
            [](BundleManifest &m, const Value &v) { setPerScreen(m, std::nullopt, v); },
            [](const Mapped &r) { return toWire(onlyScreen(r).preferredCollageLayout); }, {"flow", "scatter", "varied"},
            "flow"},
        {"branding.overlay.corner",
            [](BundleManifest &m, const Value &v) { m.branding.emplace().overlay.emplace().corner = v; },
            [](const Mapped &r) { return toWire(r.corner); }, {"top_left", "top_right", "bottom_left", "bottom_right"},
            "bottom_right"},
    };
    return keys;
}

Mapped mapWithValue(const EnumKey &key, const Value &value)
{
    BundleManifest manifest;
    key.set(manifest, value);
    return mapAll(manifest);
}

// The report text built from its rule, independently of the mapper.
QString expectedMessage(const QString &fieldPath, const QString &value, const QString &defaultWire)
{
    return fieldPath + QStringLiteral(" held unrecognized value '") + value + QStringLiteral("'; used '") + defaultWire
        + QStringLiteral("'.");
}

void expectDefaultReport(
    const BundleReport &report, const QString &fieldPath, const QString &value, const QString &defaultWire)
{
    EXPECT_EQ(report.code, BundleReportCode::unknownEnumValueDefaulted);
    EXPECT_EQ(report.message, expectedMessage(fieldPath, value, defaultWire)) << report.message.toStdString();
    EXPECT_EQ(report.fieldPath, fieldPath);
    EXPECT_EQ(report.unrecognizedValue, value);
    EXPECT_EQ(report.defaultUsed, defaultWire);
    EXPECT_EQ(report.itemId, std::nullopt);
    EXPECT_EQ(report.assetPath, std::nullopt);
}

class ManifestMapperKey : public testing::TestWithParam<EnumKey> { };

TEST_P(ManifestMapperKey, EveryWireValueMapsToItsCase)
{
    const EnumKey &key = GetParam();
    for (const char *wire : key.cases) {
        const Mapped r = mapWithValue(key, QString::fromLatin1(wire));
        EXPECT_EQ(key.get(r), QString::fromLatin1(wire));
        EXPECT_TRUE(r.reports.empty()) << wire;
    }
}

TEST_P(ManifestMapperKey, AbsentOrBlankGivesDefaultSilently)
{
    const EnumKey &key = GetParam();
    const Value values[] = {std::nullopt, QString(), QStringLiteral("   "), QStringLiteral(" \t\n ")};
    for (const Value &value : values) {
        const Mapped r = mapWithValue(key, value);
        EXPECT_EQ(key.get(r), QString::fromLatin1(key.defaultWire));
        EXPECT_TRUE(r.reports.empty()) << value.value_or(QStringLiteral("<absent>")).toStdString();
    }
}

TEST_P(ManifestMapperKey, UnrecognisedGivesDefaultAndOneReport)
{
    const EnumKey &key = GetParam();
    const QString defaultWire = QString::fromLatin1(key.defaultWire);
    // A wire value other than the default: if it were trimmed or case-folded
    // before comparing, the result would differ from the default.
    QString other;
    for (const char *wire : key.cases) {
        if (QString::fromLatin1(wire) != defaultWire) {
            other = QString::fromLatin1(wire);
            break;
        }
    }
    ASSERT_FALSE(other.isEmpty());
    QString capitalised = defaultWire;
    capitalised[0] = capitalised[0].toUpper();

    const QString values[] = {
        QStringLiteral("bogus"),
        capitalised,
        other.toUpper(),
        QStringLiteral(" ") + other,
        other + QStringLiteral(" "),
        QStringLiteral("\t") + other + QStringLiteral("\n"),
        // Placeholder-like text must appear literally in the message.
        QStringLiteral("%2%1"),
        QString::fromUtf8("ünïcødé"),
    };
    for (const QString &value : values) {
        SCOPED_TRACE(value.toStdString());
        const Mapped r = mapWithValue(key, value);
        EXPECT_EQ(key.get(r), defaultWire);
        ASSERT_EQ(r.reports.size(), 1u);
        expectDefaultReport(r.reports.front(), QString::fromLatin1(key.fieldPath), value, defaultWire);
    }
}

INSTANTIATE_TEST_SUITE_P(ManifestMapperEveryKey, ManifestMapperKey, testing::ValuesIn(enumKeys()),
    [](const testing::TestParamInfo<EnumKey> &info) {
        std::string name = info.param.fieldPath;
        for (char &c : name) {
            if (!std::isalnum(static_cast<unsigned char>(c)))
                c = '_';
        }
        return name;
    });

TEST(ManifestMapper, ReportsFollowFieldOrder)
{
    // Every key bad at once, written in an order unlike the documented one; non-string values read as
    // absent and default silently.
    const Mapped r = mapAll(manifestFromText(R"({
        "branding": {"overlay": {"corner": "middle"}},
        "display": {"preferred_per_screen": [{"preferred_collage_layout": "grid-a", "preferred_mode": "tv-a"},
                                             {"screen_ordinal": 1, "preferred_collage_layout": "varied",
                                              "preferred_mode": "tv-b"}],
                    "preferred_sync_mode": "together", "preferred_control_scope": "global"},
        "playback": {"flow": {"weight_mode": "heavy", "orientation": "diagonal"}, "file_display_format": "full",
                     "image_filter": "noir", "background": "white", "image_scaling": "stretch", "sort": "shuffle",
                     "collage_layout": "mosaic", "mode": "slides"}
    })"));
    const struct {
        const char *fieldPath;
        const char *value;
        const char *defaultWire;
    } expected[] = {
        {"playback.mode", "slides", "standard"},
        {"playback.collage_layout", "mosaic", "flow"},
        {"playback.sort", "shuffle", "random"},
        {"playback.image_scaling", "stretch", "fit_to_screen"},
        {"playback.background", "white", "black"},
        {"playback.image_filter", "noir", "none"},
        {"playback.file_display_format", "full", "filename_only"},
        {"playback.flow.orientation", "diagonal", "vertical"},
        {"playback.flow.weight_mode", "heavy", "proportional"},
        {"display.preferred_control_scope", "global", "independent"},
        {"display.preferred_sync_mode", "together", "synchronized"},
        {"display.preferred_per_screen[].preferred_mode", "tv-a", "standard"},
        {"display.preferred_per_screen[].preferred_collage_layout", "grid-a", "flow"},
        {"display.preferred_per_screen[].preferred_mode", "tv-b", "standard"},
        {"branding.overlay.corner", "middle", "bottom_right"},
    };
    ASSERT_EQ(r.reports.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        SCOPED_TRACE(i);
        expectDefaultReport(r.reports[i], QString::fromLatin1(expected[i].fieldPath),
            QString::fromLatin1(expected[i].value), QString::fromLatin1(expected[i].defaultWire));
    }
    // The documented example message, spelled out in full.
    EXPECT_EQ(
        r.reports.front().message, QStringLiteral("playback.mode held unrecognized value 'slides'; used 'standard'."));
    ASSERT_EQ(r.display.preferredPerScreen.size(), 2u);
    EXPECT_EQ(r.display.preferredPerScreen[1].screenOrdinal, 1);
    EXPECT_EQ(r.display.preferredPerScreen[1].preferredCollageLayout, CollageLayout::collage);
}

TEST(ManifestMapper, MissingOrMistypedSectionsGiveTheDefaults)
{
    const Mapped defaults = mapAll(BundleManifest {});
    EXPECT_EQ(defaults.corner, OverlayCorner::bottomRight);
    for (const char *json : {R"({"playback": {}, "display": {}, "branding": {}})",
             R"({"playback": {"flow": {}}, "display": {"preferred_per_screen": []}, "branding": {"overlay": {}}})",
             R"({"playback": "standard", "display": 2, "branding": {"overlay": "top_left"}})",
             R"({"playback": {"mode": 1, "image_filter": null, "flow": {"weight_mode": true}},
                 "display": {"preferred_control_scope": ["linked"]}})"}) {
        const Mapped r = mapAll(manifestFromText(json));
        EXPECT_TRUE(r.reports.empty()) << json;
        EXPECT_EQ(r.playback, defaults.playback) << json;
        EXPECT_EQ(r.display, defaults.display) << json;
        EXPECT_EQ(r.corner, OverlayCorner::bottomRight) << json;
    }
    // Numbers and flags stay absent rather than taking a value.
    EXPECT_EQ(defaults.playback.intervalSeconds, std::nullopt);
    EXPECT_EQ(defaults.playback.shuffleSeed, std::nullopt);
    EXPECT_EQ(defaults.display.preferredScreenCount, std::nullopt);
}

TEST(ManifestMapper, NumbersAndFlagsCarriedOverUnchanged)
{
    const Mapped r = mapAll(manifestFromText(R"({
        "playback": {"interval_seconds": 7.25, "auto_advance": false, "loop": true, "reshuffle_on_loop": false,
                     "shuffle_seed": -9007199254740993, "crossfade": false, "transition_seconds": 0,
                     "show_image_info": false, "show_progress": true,
                     "flow": {"column_adjustment": -2, "infinite_scroll": false, "bidirectional_scroll": true,
                              "scroll_speed": 0.35, "auto_cycle_tiles": false, "tiles_per_change": 4,
                              "stagger_swaps": true}},
        "display": {"preferred_screen_count": 3, "preferred_phase_delay_seconds": 1.5,
                    "prefer_duplicate_avoidance": false,
                    "preferred_per_screen": [{"screen_ordinal": 2, "preferred_mode": "collage",
                                              "preferred_collage_layout": "scatter"}, {}]}
    })"));
    EXPECT_TRUE(r.reports.empty());
    BundlePlaybackPreferences p = mapAll(BundleManifest {}).playback;
    p.intervalSeconds = 7.25;
    p.autoAdvance = false;
    p.loop = true;
    p.reshuffleOnLoop = false;
    p.shuffleSeed = -9007199254740993LL;
    p.crossfade = false;
    p.transitionSeconds = 0.0;
    p.showImageInfo = false;
    p.showProgress = true;
    p.flow.columnAdjustment = -2;
    p.flow.infiniteScroll = false;
    p.flow.bidirectionalScroll = true;
    p.flow.scrollSpeed = 0.35;
    p.flow.autoCycleTiles = false;
    p.flow.tilesPerChange = 4;
    p.flow.staggerSwaps = true;
    EXPECT_EQ(r.playback, p);
    const BundleDisplayPreferences &d = r.display;
    EXPECT_EQ(d.preferredScreenCount, 3);
    EXPECT_EQ(d.preferredPhaseDelaySeconds, 1.5);
    EXPECT_EQ(d.preferDuplicateAvoidance, false);
    ASSERT_EQ(d.preferredPerScreen.size(), 2u);
    EXPECT_EQ(d.preferredPerScreen[0], (BundlePerScreenPreference {2, DisplayMode::collage, CollageLayout::scatter}));
    EXPECT_EQ(d.preferredPerScreen[1],
        (BundlePerScreenPreference {std::nullopt, DisplayMode::standard, CollageLayout::flow}));
}

} // namespace
