#include "bundle/BundleJSON.h"
#include "bundle/BundleManifest.h"
#include "bundle/ManifestFields.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonParseError>

#include <limits>
#include <optional>
#include <vector>

using namespace sorvane;

namespace {

constexpr qint64 int64Max = std::numeric_limits<qint64>::max();
constexpr qint64 int64Min = std::numeric_limits<qint64>::min();

QJsonObject parseObject(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << " in " << text.constData();
    EXPECT_TRUE(document.isObject()) << text.constData();
    return document.object();
}

// One JSON value as the parser produces it, so numbers take the parser's own
// integer/double decision rather than one made by the test.
QJsonValue parseValue(const char *text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray("[") + text + "]", &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text;
    return document.array().at(0);
}

BundleManifest parseManifest(const char *text)
{
    return BundleManifest::fromJson(parseObject(QByteArray(text)));
}

// ---------------------------------------------------------------------------
// Tolerant typed reads.

TEST(ManifestFields, IntegerReads)
{
    const struct {
        const char *json;
        std::optional<qint64> expected;
    } table[] = {
        {"42", 42},
        {"-7", -7},
        {"0", 0},
        // Fractions truncate toward zero, on both sides of zero.
        {"1919.7", 1919},
        {"-3.9", -3},
        {"0.9999", 0},
        {"-0.5", 0},
        {"1.5e2", 150},
        {"1e18", 1000000000000000000LL},
        // Beyond 2^53 a detour through double would lose the last digit.
        {"9007199254740993", 9007199254740993LL},
        {"9223372036854775807", int64Max},
        {"-9223372036854775808", int64Min},
        // Out of the 64-bit range.
        {"9223372036854775808", std::nullopt},
        {"1e300", std::nullopt},
        {"-1e300", std::nullopt},
        // Not numbers.
        {"true", std::nullopt},
        {"false", std::nullopt},
        {"\"5\"", std::nullopt},
        {"null", std::nullopt},
        {"[1]", std::nullopt},
        {"{}", std::nullopt},
    };
    for (const auto &row : table)
        EXPECT_EQ(ManifestFields::integer(parseValue(row.json)), row.expected) << row.json;
    EXPECT_EQ(ManifestFields::integer(QJsonObject().value(QLatin1StringView("missing"))), std::nullopt);
    // The other kinds are read only when the JSON type matches; an empty string is still a string.
    EXPECT_EQ(ManifestFields::number(parseValue("1e300")), 1e300);
    EXPECT_EQ(ManifestFields::number(parseValue("\"1.5\"")), std::nullopt);
    EXPECT_EQ(ManifestFields::boolean(parseValue("1")), std::nullopt);
    EXPECT_EQ(ManifestFields::string(parseValue("\"\"")), QString());
    EXPECT_EQ(ManifestFields::string(parseValue("[\"a\"]")), std::nullopt);
}

// ---------------------------------------------------------------------------
// The same rules as seen through the manifest's own members.

TEST(ManifestParsing, MistypedMembersReadAsAbsent)
{
    const BundleManifest m = parseManifest(R"({
        "format": "sorvane.bundle",
        "format_version": "2",
        "min_reader_version": true,
        "title": 12,
        "bundle_id": null,
        "include_originals": 1,
        "created_by": "someone",
        "counts": [],
        "playback": {"loop": 1, "interval_seconds": true, "auto_advance": false, "mode": 3,
                     "transition_seconds": "0.5", "flow": "wide"},
        "branding": {"overlay": 3, "holding": "yes", "display_name": "Studio"},
        "items": []
    })");
    EXPECT_EQ(m.format, QStringLiteral("sorvane.bundle"));
    EXPECT_EQ(m.formatVersion, std::nullopt);
    EXPECT_EQ(m.minReaderVersion, std::nullopt);
    EXPECT_EQ(m.title, std::nullopt);
    EXPECT_EQ(m.bundleId, std::nullopt);
    EXPECT_EQ(m.includeOriginals, std::nullopt);
    EXPECT_EQ(m.createdBy, std::nullopt);
    EXPECT_EQ(m.counts, std::nullopt);
    ASSERT_TRUE(m.playback.has_value());
    EXPECT_EQ(m.playback->loop, std::nullopt);
    EXPECT_EQ(m.playback->intervalSeconds, std::nullopt);
    EXPECT_EQ(m.playback->autoAdvance, false);
    EXPECT_EQ(m.playback->mode, std::nullopt);
    EXPECT_EQ(m.playback->transitionSeconds, std::nullopt);
    EXPECT_EQ(m.playback->flow, std::nullopt);
    ASSERT_TRUE(m.branding.has_value());
    EXPECT_EQ(m.branding->overlay, std::nullopt);
    EXPECT_EQ(m.branding->holding, std::nullopt);
    EXPECT_EQ(m.branding->displayName, QStringLiteral("Studio"));
    // Known keys of the wrong type are not unknown members.
    EXPECT_EQ(m.totalUnknownMemberCount(), 0);
}

TEST(ManifestParsing, WholeNumberMembers)
{
    const BundleManifest m = parseManifest(R"({
        "format_version": 2,
        "min_reader_version": 1.9,
        "playback": {"shuffle_seed": 9223372036854775807},
        "counts": {"asset_bytes": 9223372036854775808, "original_bytes": 1e300, "items": -3.9},
        "items": [{"id": "a", "source_bytes": -9223372036854775808,
                   "assets": {"full": {"w": 1919.7, "h": -3.9, "bytes": 1e300, "duration_seconds": 2}}}]
    })");
    EXPECT_EQ(m.formatVersion, 2);
    EXPECT_EQ(m.minReaderVersion, 1);
    ASSERT_TRUE(m.playback);
    EXPECT_EQ(m.playback->shuffleSeed, int64Max);
    ASSERT_TRUE(m.counts);
    EXPECT_EQ(m.counts->assetBytes, std::nullopt);
    EXPECT_EQ(m.counts->originalBytes, std::nullopt);
    EXPECT_EQ(m.counts->items, -3);
    ASSERT_TRUE(m.items);
    ASSERT_EQ(m.items->size(), 1u);
    const BundleItem &item = m.items->front();
    EXPECT_EQ(item.sourceBytes, int64Min);
    const BundleAsset *full = item.asset(QStringLiteral("full"));
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(full->w, 1919);
    EXPECT_EQ(full->h, -3);
    EXPECT_EQ(full->bytes, std::nullopt);
    EXPECT_EQ(full->durationSeconds, 2.0);
}

TEST(ManifestParsing, ItemsKeyPresence)
{
    const struct {
        const char *json;
        bool keyPresent;
        std::optional<size_t> itemCount;
    } table[] = {
        {R"({"format": "sorvane.bundle"})", false, std::nullopt},
        {R"({"items": {"id": "a"}})", true, std::nullopt},
        {R"({"items": "a"})", true, std::nullopt},
        {R"({"items": null})", true, std::nullopt},
        {R"({"items": []})", true, 0},
        {R"({"items": [{"id": "a"}, {"id": "b"}]})", true, 2},
    };
    for (const auto &row : table) {
        const BundleManifest m = parseManifest(row.json);
        EXPECT_EQ(m.itemsKeyPresent, row.keyPresent) << row.json;
        ASSERT_EQ(m.items.has_value(), row.itemCount.has_value()) << row.json;
        if (m.items)
            EXPECT_EQ(m.items->size(), *row.itemCount) << row.json;
        EXPECT_EQ(m.totalUnknownMemberCount(), 0) << row.json;
    }
}

TEST(ManifestParsing, NonObjectItemEntriesReadAsItemsWithoutId)
{
    const BundleManifest m = parseManifest(R"({"items": [1, "a", null, [], {"id": "x", "media_type": "image"}]})");
    ASSERT_TRUE(m.items);
    ASSERT_EQ(m.items->size(), 5u);
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ((*m.items)[i].id, std::nullopt) << i;
        EXPECT_EQ((*m.items)[i], BundleItem {}) << i;
    }
    EXPECT_EQ((*m.items)[4].id, QStringLiteral("x"));
    EXPECT_EQ((*m.items)[4].mediaType, QStringLiteral("image"));
}

// A list long enough to be taken out of the document entry by entry reads the
// same, in order, and leaves a document shared with the caller intact.
TEST(ManifestParsing, HugeItemListsReadInOrder)
{
    QJsonArray items;
    for (int i = 0; i < 60000; ++i)
        items.append(i == 7 ? QJsonValue(7) : QJsonValue(QJsonObject {{"id", QString::number(i)}}));
    QJsonObject object {{"items", items}, {"extra", true}};
    const QJsonObject shared = object;
    const BundleManifest m = BundleManifest::takeFromJson(object);
    ASSERT_TRUE(m.items && m.items->size() == 60000u);
    EXPECT_EQ(m.unknownMemberCount, 1);
    for (const size_t i : {0u, 6u, 8u, 59999u})
        EXPECT_EQ((*m.items)[i].id, QString::number(i));
    EXPECT_EQ((*m.items)[7], BundleItem {});
    EXPECT_EQ(shared["items"].toArray().size(), 60000);
    EXPECT_EQ(shared["items"].toArray().at(59999).toObject()["id"], "59999");
}

TEST(ManifestParsing, NonObjectEntriesOfOtherArraysReadAsEmpty)
{
    const BundleManifest m = parseManifest(R"({
        "players": [7, {"platform": "linux"}],
        "derivatives": {"tiers": ["tile", {"name": "full", "target_long_edge": 2160}]},
        "display": {"preferred_per_screen": [null, {"screen_ordinal": 2}]},
        "items": [{"id": "a", "assets": {"tile": "media/a.jpg", "full": {"path": "media/full/a.jpg"}}}]
    })");
    ASSERT_TRUE(m.players);
    ASSERT_EQ(m.players->size(), 2u);
    EXPECT_EQ((*m.players)[0], BundlePlayerEntry {});
    EXPECT_EQ((*m.players)[1].platform, QStringLiteral("linux"));
    ASSERT_TRUE(m.derivatives && m.derivatives->tiers);
    ASSERT_EQ(m.derivatives->tiers->size(), 2u);
    EXPECT_EQ((*m.derivatives->tiers)[0], BundleTier {});
    EXPECT_EQ((*m.derivatives->tiers)[1].targetLongEdge, 2160);
    ASSERT_TRUE(m.display && m.display->preferredPerScreen);
    ASSERT_EQ(m.display->preferredPerScreen->size(), 2u);
    EXPECT_EQ((*m.display->preferredPerScreen)[0], BundlePerScreenJSON {});
    EXPECT_EQ((*m.display->preferredPerScreen)[1].screenOrdinal, 2);
    ASSERT_TRUE(m.items);
    const BundleItem &item = m.items->front();
    const BundleAsset *tile = item.asset(QStringLiteral("tile"));
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(*tile, BundleAsset {});
    ASSERT_NE(item.asset(QStringLiteral("full")), nullptr);
    EXPECT_EQ(item.asset(QStringLiteral("full"))->path, QStringLiteral("media/full/a.jpg"));
    EXPECT_EQ(item.asset(QStringLiteral("video")), nullptr);
}

// ---------------------------------------------------------------------------
// Unknown members.

TEST(ManifestParsing, UnknownMemberTotals)
{
    const struct {
        const char *json;
        int total;
    } table[] = {
        {R"({})", 0},
        // Counted objects.
        {R"({"created_by": {"app": "x", "os": "y"}})", 1},
        {R"({"counts": {"items": 1, "videos": 0}})", 1},
        {R"({"derivatives": {"tiers": [], "dpi": 72}})", 1},
        {R"({"playback": {"speed": 2}})", 1},
        {R"({"display": {"hdr": true, "preferred_screen_count": 2}})", 1},
        {R"({"branding": {"tagline": "t"}})", 1},
        {R"({"branding": {"overlay": {"corner": "top_left", "blend": "add", "shadow": 1}}})", 2},
        {R"({"items": [{"id": "a", "x": 1}, {"id": "b"}, {"id": "c", "y": 1, "z": 2}]})", 3},
        // A member counts even when its value is null; keys are case-sensitive.
        {R"({"x": null, "Title": "t", "title": "t"})", 2},
        // Uncounted objects add nothing, however many unknown members they hold.
        {R"({"playback": {"flow": {"a": 1, "b": 2}}})", 0},
        {R"({"items": [{"id": "a", "assets": {"full": {"a": 1, "b": 2}, "extra_tier": {}}}]})", 0},
        {R"({"derivatives": {"tiers": [{"name": "tile", "a": 1}, {"b": 2}]}})", 0},
        {R"({"players": [{"platform": "p", "a": 1}, {"b": 2}]})", 0},
        {R"({"display": {"preferred_per_screen": [{"screen_ordinal": 1, "a": 1}, {"b": 2}]}})", 0},
        // A counted key holding a non-object is not parsed as one, so nothing inside it counts.
        {R"({"playback": [{"a": 1}], "items": {"a": 1}, "branding": {"overlay": [{"a": 1}]}})", 0},
        // Everything together: 2 top + 1 created_by + 1 counts + 1 derivatives + 1 playback
        // + 1 display + 1 branding + 1 overlay + 2 items.
        {R"({"a": 1, "b": 2,
            "created_by": {"c": 1}, "counts": {"c": 1}, "derivatives": {"c": 1, "tiers": [{"u": 1}]},
            "playback": {"c": 1, "flow": {"u": 1}}, "display": {"c": 1, "preferred_per_screen": [{"u": 1}]},
            "players": [{"u": 1}],
            "branding": {"c": 1, "overlay": {"c": 1}},
            "items": [{"c": 1, "assets": {"full": {"u": 1}}}, {"c": 1}]})",
            11},
    };
    for (const auto &row : table)
        EXPECT_EQ(parseManifest(row.json).totalUnknownMemberCount(), row.total) << row.json;
}

// ---------------------------------------------------------------------------
// Writing and reading back.

// Every member of every object, in the writer's order (tiers come back sorted by name), with values chosen to stress
// it: whole doubles, integers past 2^53, the 64-bit extremes and awkward text.
const char complete[]
    = R"({"format":"sorvane.bundle","format_version":2,"min_reader_version":1,)"
      R"("bundle_id":"b-7f3a","title":"Été \"à la plage\" \\ 日本 😀\n\ttab\u0001\u001f end/",)"
      R"("created_utc":"2024-05-01T12:00:00Z",)"
      R"("created_by":{"app":"Sorvane","app_version":"1.2.3","platform":"linux","writer_version":1},)"
      R"("flavor":"with-player","include_originals":true,)"
      R"("counts":{"items":2,"asset_files":5,"asset_bytes":9223372036854775807,"original_files":2,)"
      R"("original_bytes":9007199254740993},)"
      R"("derivatives":{"tiers":[{"name":"tile","target_long_edge":1200,"dir":"media"},)"
      R"({"name":"full","target_long_edge":2160,"dir":"media"}],"filters_baked_in":false,)"
      R"("orientation_baked_in":true,"metadata_stripped":true},)"
      R"("playback":{"mode":"collage","collage_layout":"scatter","interval_seconds":2.0,"auto_advance":true,)"
      R"("loop":false,"reshuffle_on_loop":true,"sort":"created","shuffle_seed":-9007199254740993,"crossfade":true,)"
      R"("transition_seconds":0.6,"image_scaling":"fill_screen","background":"dark_gray","image_filter":"sepia",)"
      R"("show_image_info":false,"file_display_format":"parent_plus_filename","show_progress":true,)"
      R"("flow":{"orientation":"horizontal","column_adjustment":-2,"infinite_scroll":true,)"
      R"("bidirectional_scroll":false,"scroll_speed":1.0,"auto_cycle_tiles":true,"tiles_per_change":3,)"
      R"("stagger_swaps":false,"weight_mode":"weighted"}},)"
      R"("display":{"preferred_screen_count":3,"preferred_control_scope":"linked","preferred_sync_mode":"phased",)"
      R"("preferred_phase_delay_seconds":0.1,"prefer_duplicate_avoidance":true,"preferred_per_screen":[)"
      R"({"screen_ordinal":0,"preferred_mode":"standard","preferred_collage_layout":"varied"},)"
      R"({"screen_ordinal":1,"preferred_mode":"collage","preferred_collage_layout":"flow"}]},)"
      R"("players":[{"platform":"linux-x86_64","entry":"player/SorvanePlayer","payload_dir":"player",)"
      R"("player_version":"1.0.0","reader_capability_version":1,"bytes":48000000000}],)"
      R"("branding":{"display_name":"Studio Ø","logo_asset":"assets/branding/logo.png","holding":true,)"
      R"("overlay":{"enabled":true,"corner":"top_left","size_percent":12.5,"opacity":1.0,"margin_percent":3.0}},)"
      R"("items":[{"id":"a1","media_type":"image","source_name":"IMG_0001 \"copy\".jpg",)"
      R"("source_bytes":4294967296,"source_created_utc":"2023-01-01T00:00:00Z",)"
      R"("source_modified_utc":"2023-01-02T00:00:00.5Z","captured_utc":"2022-12-31T23:59:59Z","animated":false,)"
      R"("assets":{"full":{"path":"media/a1_full.jpg","w":2160,"h":1440,"bytes":480000,"sha256":"9f86d1"},)"
      R"("original":{"path":"originals/a1.jpg","w":6000,"h":4000,"bytes":4294967296,"sha256":"9f86d2"},)"
      R"("tile":{"path":"media/a1_tile.jpg","w":1200,"h":800,"bytes":120000,"sha256":"9f86d0"}}},)"
      R"({"id":"v2","media_type":"video","source_name":"clip.mov","source_bytes":0,)"
      R"("source_created_utc":"2023-02-01T00:00:00Z","source_modified_utc":"2023-02-01T00:00:00Z",)"
      R"("captured_utc":"2023-02-01T00:00:00Z","animated":false,"assets":{"video":{"path":"media/video/v2.mp4",)"
      R"("w":1920,"h":1080,"bytes":9000000,"sha256":"9f86d3","duration_seconds":12.0,"container":"mp4",)"
      R"("video_codec":"h264","audio_codec":"aac","has_audio":true}}}]})";

TEST(ManifestRoundTrip, EveryMemberIsReadAndWrittenBackInSchemaOrder)
{
    const BundleManifest read = BundleManifest::fromJson(parseObject(complete));
    // No key went unrecognised, and every one comes back with its value, in order.
    EXPECT_EQ(read.totalUnknownMemberCount(), 0);
    EXPECT_EQ(read.toJson().serialize(false).toStdString(), std::string(complete));
    const QByteArray pretty = read.toJson().serialize(true);
    EXPECT_EQ(BundleManifest::fromJson(parseObject(pretty)), read);
    EXPECT_TRUE(pretty.startsWith("{\n  \"format\": \"sorvane.bundle\",\n  \"format_version\": 2,"));
    EXPECT_TRUE(pretty.endsWith("\n}\n"));
}

TEST(ManifestRoundTrip, AbsentMembersAreNotWritten)
{
    BundleManifest m;
    m.format = QStringLiteral("sorvane.bundle");
    BundlePlaybackJSON playback;
    playback.loop = false;
    m.playback = playback;
    const QByteArray text = m.toJson().serialize();
    EXPECT_FALSE(text.contains("null")) << text.constData();
    const QJsonObject object = parseObject(text);
    EXPECT_EQ(object.keys(), (QStringList {QStringLiteral("format"), QStringLiteral("playback")}));
    EXPECT_EQ(object.value(QLatin1StringView("playback")).toObject().keys(), QStringList {QStringLiteral("loop")});
    EXPECT_EQ(BundleManifest::fromJson(object), m);
}

// ---------------------------------------------------------------------------
// The ordered JSON value itself.

TEST(BundleJSON, ObjectsKeepInsertionOrder)
{
    BundleJSON object = BundleJSON::object({{QStringLiteral("z"), 1}, {QStringLiteral("a"), true}});
    object.insert(QStringLiteral("m"), BundleJSON::array({BundleJSON("x"), BundleJSON(2.5)}));
    object.insert(QStringLiteral("b"), std::optional<qint64> {});
    object.insert(QStringLiteral("c"), std::optional<QString> {QStringLiteral("kept")});
    EXPECT_EQ(object.serialize(false), QByteArray(R"({"z":1,"a":true,"m":["x",2.5],"c":"kept"})"));
    ASSERT_NE(object.find(QStringLiteral("c")), nullptr);
    EXPECT_EQ(*object.find(QStringLiteral("c"))->asString(), QStringLiteral("kept"));
    EXPECT_EQ(object.find(QStringLiteral("b")), nullptr);
}

TEST(BundleJSON, ScalarAndEmptyTexts)
{
    const struct {
        BundleJSON value;
        const char *compact;
    } table[] = {
        {BundleJSON(42), "42"},
        {BundleJSON(qint64(-7)), "-7"},
        {BundleJSON(int64Max), "9223372036854775807"},
        {BundleJSON(int64Min), "-9223372036854775808"},
        {BundleJSON(true), "true"},
        {BundleJSON(false), "false"},
        {BundleJSON(""), "\"\""},
        {BundleJSON::object(), "{}"},
        {BundleJSON::array(), "[]"},
    };
    for (const auto &row : table) {
        EXPECT_EQ(row.value.serialize(false), QByteArray(row.compact));
        // Pretty output differs only by the closing newline for these.
        EXPECT_EQ(row.value.serialize(true), QByteArray(row.compact) + '\n');
    }
}

TEST(BundleJSON, PrettyLayout)
{
    const BundleJSON value = BundleJSON::object(
        {{QStringLiteral("a"), BundleJSON::array({BundleJSON(1), BundleJSON::object()})}, {QStringLiteral("b"), "c"}});
    EXPECT_EQ(value.serialize(true), QByteArray("{\n  \"a\": [\n    1,\n    {}\n  ],\n  \"b\": \"c\"\n}\n"));
}

TEST(BundleJSON, DoublesStayDoubles)
{
    const double table[] = {2.0, 0.0, -0.5, 0.1, 0.6, 12.5, 1e300, 1e-300, -1e21, 4503599627370497.0, 5e-324};
    for (const double number : table) {
        const QByteArray text = BundleJSON(number).serialize(false);
        // Written with a fraction or an exponent so no reader takes it for an integer.
        EXPECT_TRUE(text.contains('.') || text.contains('e') || text.contains('E')) << text.constData();
        const QJsonValue read = parseValue(text.constData());
        ASSERT_TRUE(read.isDouble()) << text.constData();
        EXPECT_EQ(read.toDouble(), number) << text.constData();
    }
    EXPECT_EQ(BundleJSON(2.0).serialize(false), QByteArray("2.0"));
}

TEST(BundleJSON, StringsAreEscapedAndRoundTrip)
{
    const struct {
        QString text;
        const char *escaped; // the escape that must appear in the output, or nullptr
    } table[] = {
        {QStringLiteral("say \"hi\""), R"(\")"},
        {QStringLiteral("C:\\dir\\file"), R"(\\)"},
        {QStringLiteral("line\nbreak"), R"(\n)"},
        {QStringLiteral("tab\there"), R"(\t)"},
        {QStringLiteral("cr\rhere"), R"(\r)"},
        {QString::fromUtf8("bell\x07"), R"(\u0007)"},
        {QString::fromUtf8("unit\x1f"), R"(\u001f)"},
        {QString(QChar(0)) + QStringLiteral("nul"), R"(\u0000)"},
        {QString::fromUtf8("bs\b ff\f"), nullptr},
        {QString::fromUtf8("Ünïcødé 日本語 😀"), nullptr},
        {QStringLiteral("a/b"), nullptr},
        {QStringLiteral("\\\"\\\""), nullptr},
    };
    for (const auto &row : table) {
        const BundleJSON value = BundleJSON::object({{row.text, row.text}});
        const QByteArray text = value.serialize(false);
        // Compact output has no layout whitespace, so any byte below 0x20 would be a raw control character.
        for (const char c : text)
            EXPECT_GE(static_cast<unsigned char>(c), 0x20) << row.text.toStdString();
        if (row.escaped)
            EXPECT_TRUE(text.contains(row.escaped)) << text.constData();
        const QJsonObject read = parseObject(text);
        ASSERT_EQ(read.size(), 1) << text.constData();
        EXPECT_EQ(read.begin().key(), row.text);
        EXPECT_EQ(read.begin().value().toString(), row.text);
    }
}

} // namespace
