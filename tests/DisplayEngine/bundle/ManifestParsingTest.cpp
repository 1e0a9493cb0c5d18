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

TEST(ManifestFields, TypedReadsTakeOnlyTheirOwnKind)
{
    const struct {
        const char *json;
        std::optional<qint64> expected;
    } table[] = {
        {"42", 42},
        // Fractions truncate toward zero, on both sides of zero.
        {"1919.7", 1919},
        {"-3.9", -3},
        // Beyond 2^53 a detour through double would lose the last digit.
        {"9007199254740993", 9007199254740993LL},
        {"9223372036854775807", int64Max},
        {"-9223372036854775808", int64Min},
        // Out of the 64-bit range, or not numbers.
        {"9223372036854775808", std::nullopt},
        {"true", std::nullopt},
        {"\"5\"", std::nullopt},
        {"[1]", std::nullopt},
    };
    for (const auto &row : table)
        EXPECT_EQ(ManifestFields::integer(parseValue(row.json)), row.expected) << row.json;
    // The other kinds are read only when the JSON type matches; an empty string is still a string.
    EXPECT_EQ(ManifestFields::number(parseValue("1e300")), 1e300);
    EXPECT_EQ(ManifestFields::number(parseValue("\"1.5\"")), std::nullopt);
    EXPECT_EQ(ManifestFields::boolean(parseValue("1")), std::nullopt);
    EXPECT_EQ(ManifestFields::string(parseValue("\"\"")), QString());
    EXPECT_EQ(ManifestFields::string(parseValue("[\"a\"]")), std::nullopt);
}

// ---------------------------------------------------------------------------
// Unknown members.

TEST(ManifestParsing, UnknownMemberTotals)
{
    const struct {
        const char *json;
        int total;
    } table[] = {
        // A known member of the wrong type reads as absent, not as unknown.
        {R"({"format_version": "2", "counts": [], "players": [7], "items": [1, {"assets": {"tile": 1}}]})", 0},
        // A member counts even when its value is null; keys are case-sensitive.
        {R"({"x": null, "Title": "t", "title": "t"})", 2},
        // Uncounted objects add nothing, however many unknown members they hold.
        {R"({"playback": {"flow": {"a": 1, "b": 2}}})", 0},
        {R"({"items": [{"id": "a", "assets": {"full": {"a": 1, "b": 2}, "extra_tier": {}}}]})", 0},
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
      R"("bundle_id":"b-7f3a","title":"Été \"à la plage\" \\ 日本 😀\n\ttab\b\f\r\u0000\u0001\u001f end/",)"
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

TEST(BundleJSON, PrettyLayout)
{
    const BundleJSON value = BundleJSON::object(
        {{QStringLiteral("a"), BundleJSON::array({BundleJSON(1), BundleJSON::object()})}, {QStringLiteral("b"), "c"}});
    EXPECT_EQ(value.serialize(true), QByteArray("{\n  \"a\": [\n    1,\n    {}\n  ],\n  \"b\": \"c\"\n}\n"));
    EXPECT_EQ(*value.find(QStringLiteral("b"))->asString(), QStringLiteral("c"));
    EXPECT_EQ(value.find(QStringLiteral("c")), nullptr);
}

} // namespace
