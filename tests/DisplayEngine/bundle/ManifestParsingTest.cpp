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
}

TEST(ManifestFields, NumberReads)
{
    const struct {
        const char *json;
        std::optional<double> expected;
    } table[] = {
        {"2", 2.0},
        {"0.6", 0.6},
        {"-1.25", -1.25},
        {"1e300", 1e300},
        {"true", std::nullopt},
        {"\"1.5\"", std::nullopt},
        {"null", std::nullopt},
        {"[]", std::nullopt},
    };
    for (const auto &row : table)
        EXPECT_EQ(ManifestFields::number(parseValue(row.json)), row.expected) << row.json;
}

TEST(ManifestFields, BooleanReads)
{
    const struct {
        const char *json;
        std::optional<bool> expected;
    } table[] = {
        {"true", true},
        {"false", false},
        {"1", std::nullopt},
        {"0", std::nullopt},
        {"\"true\"", std::nullopt},
        {"null", std::nullopt},
        {"{}", std::nullopt},
    };
    for (const auto &row : table)
        EXPECT_EQ(ManifestFields::boolean(parseValue(row.json)), row.expected) << row.json;
}

TEST(ManifestFields, StringReads)
{
    const struct {
        const char *json;
        std::optional<QString> expected;
    } table[] = {
        {"\"x\"", QStringLiteral("x")},
        // An empty string is still a string.
        {"\"\"", QString()},
        {"1", std::nullopt},
        {"false", std::nullopt},
        {"null", std::nullopt},
        {"[\"a\"]", std::nullopt},
        {"{\"a\":\"b\"}", std::nullopt},
    };
    for (const auto &row : table) {
        const auto read = ManifestFields::string(parseValue(row.json));
        ASSERT_EQ(read.has_value(), row.expected.has_value()) << row.json;
        if (read)
            EXPECT_EQ(*read, *row.expected) << row.json;
    }
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

TEST(ManifestParsing, DesignExampleTotalsSix)
{
    const BundleManifest m = parseManifest(R"({
        "format": "sorvane.bundle", "format_version": 2, "min_reader_version": 1,
        "extra_one": 1, "extra_two": "two", "extra_three": {"nested": true},
        "playback": {"mode": "standard", "future_knob": 3,
                     "flow": {"orientation": "vertical", "flow_future": 1, "another": 2}},
        "items": [
            {"id": "a", "rating": 5, "assets": {"full": {"path": "media/a.jpg", "hdr": true}}},
            {"id": "b", "people": [], "assets": {"tile": {"path": "media/b.jpg", "x": 1, "y": 2}}}
        ]
    })");
    EXPECT_EQ(m.unknownMemberCount, 3);
    ASSERT_TRUE(m.playback);
    EXPECT_EQ(m.playback->unknownMemberCount, 1);
    ASSERT_TRUE(m.items);
    ASSERT_EQ(m.items->size(), 2u);
    EXPECT_EQ((*m.items)[0].unknownMemberCount, 1);
    EXPECT_EQ((*m.items)[1].unknownMemberCount, 1);
    EXPECT_EQ(m.totalUnknownMemberCount(), 6);
}

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

BundleAsset asset(const char *path, qint64 w, qint64 h, qint64 bytes)
{
    BundleAsset a;
    a.path = QString::fromUtf8(path);
    a.w = w;
    a.h = h;
    a.bytes = bytes;
    a.sha256 = QStringLiteral("9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08");
    return a;
}

// Every member of every object set, with values chosen to stress the writer:
// whole doubles, integers past 2^53, the 64-bit extremes, and awkward text.
BundleManifest completeManifest()
{
    BundleManifest m;
    m.format = QStringLiteral("sorvane.bundle");
    m.formatVersion = 2;
    m.minReaderVersion = 1;
    m.bundleId = QStringLiteral("b-7f3a");
    m.title = QString::fromUtf8("Été \"à la plage\" \\ 日本 😀\n\ttab\x01\x1f end/");
    m.createdUtc = QStringLiteral("2024-05-01T12:00:00Z");

    BundleCreatedBy createdBy;
    createdBy.app = QStringLiteral("Sorvane");
    createdBy.appVersion = QStringLiteral("1.2.3");
    createdBy.platform = QStringLiteral("linux");
    createdBy.writerVersion = 1;
    m.createdBy = createdBy;

    m.flavor = QStringLiteral("with-player");
    m.includeOriginals = true;

    BundleCounts counts;
    counts.items = 2;
    counts.assetFiles = 5;
    counts.assetBytes = int64Max;
    counts.originalFiles = 2;
    counts.originalBytes = 9007199254740993LL;
    m.counts = counts;

    BundleDerivatives derivatives;
    BundleTier tile;
    tile.name = QStringLiteral("tile");
    tile.targetLongEdge = 1200;
    tile.dir = QStringLiteral("media");
    BundleTier full;
    full.name = QStringLiteral("full");
    full.targetLongEdge = 2160;
    full.dir = QStringLiteral("media");
    derivatives.tiers = std::vector<BundleTier> {tile, full};
    derivatives.filtersBakedIn = false;
    derivatives.orientationBakedIn = true;
    derivatives.metadataStripped = true;
    m.derivatives = derivatives;

    BundlePlaybackJSON playback;
    playback.mode = QStringLiteral("collage");
    playback.collageLayout = QStringLiteral("scatter");
    playback.intervalSeconds = 2.0;
    playback.autoAdvance = true;
    playback.loop = false;
    playback.reshuffleOnLoop = true;
    playback.sort = QStringLiteral("created");
    playback.shuffleSeed = -9007199254740993LL;
    playback.crossfade = true;
    playback.transitionSeconds = 0.6;
    playback.imageScaling = QStringLiteral("fill_screen");
    playback.background = QStringLiteral("dark_gray");
    playback.imageFilter = QStringLiteral("sepia");
    playback.showImageInfo = false;
    playback.fileDisplayFormat = QStringLiteral("parent_plus_filename");
    playback.showProgress = true;
    BundleFlowJSON flow;
    flow.orientation = QStringLiteral("horizontal");
    flow.columnAdjustment = -2;
    flow.infiniteScroll = true;
    flow.bidirectionalScroll = false;
    flow.scrollSpeed = 1.0;
    flow.autoCycleTiles = true;
    flow.tilesPerChange = 3;
    flow.staggerSwaps = false;
    flow.weightMode = QStringLiteral("weighted");
    playback.flow = flow;
    m.playback = playback;

    BundleDisplayJSON display;
    display.preferredScreenCount = 3;
    display.preferredControlScope = QStringLiteral("linked");
    display.preferredSyncMode = QStringLiteral("phased");
    display.preferredPhaseDelaySeconds = 0.1;
    display.preferDuplicateAvoidance = true;
    BundlePerScreenJSON screen0;
    screen0.screenOrdinal = 0;
    screen0.preferredMode = QStringLiteral("standard");
    screen0.preferredCollageLayout = QStringLiteral("varied");
    BundlePerScreenJSON screen1;
    screen1.screenOrdinal = 1;
    screen1.preferredMode = QStringLiteral("collage");
    screen1.preferredCollageLayout = QStringLiteral("flow");
    display.preferredPerScreen = std::vector<BundlePerScreenJSON> {screen0, screen1};
    m.display = display;

    BundlePlayerEntry player;
    player.platform = QStringLiteral("linux-x86_64");
    player.entry = QStringLiteral("player/SorvanePlayer");
    player.payloadDir = QStringLiteral("player");
    player.playerVersion = QStringLiteral("1.0.0");
    player.readerCapabilityVersion = 1;
    player.bytes = 48'000'000'000LL;
    m.players = std::vector<BundlePlayerEntry> {player};

    BundleBrandingJson branding;
    branding.displayName = QStringLiteral("Studio Ø");
    branding.logoAsset = QStringLiteral("assets/branding/logo.png");
    branding.holding = true;
    BundleBrandingOverlayJson overlay;
    overlay.enabled = true;
    overlay.corner = QStringLiteral("top_left");
    overlay.sizePercent = 12.5;
    overlay.opacity = 1.0;
    overlay.marginPercent = 3.0;
    branding.overlay = overlay;
    m.branding = branding;

    BundleItem photo;
    photo.id = QStringLiteral("a1");
    photo.mediaType = QStringLiteral("image");
    photo.sourceName = QStringLiteral("IMG_0001 \"copy\".jpg");
    photo.sourceBytes = 4'294'967'296LL;
    photo.sourceCreatedUtc = QStringLiteral("2023-01-01T00:00:00Z");
    photo.sourceModifiedUtc = QStringLiteral("2023-01-02T00:00:00.5Z");
    photo.capturedUtc = QStringLiteral("2022-12-31T23:59:59Z");
    photo.animated = false;
    // A writer's natural order, not alphabetical.
    photo.assets.emplace_back(QStringLiteral("tile"), asset("media/a1_tile.jpg", 1200, 800, 120'000));
    photo.assets.emplace_back(QStringLiteral("full"), asset("media/a1_full.jpg", 2160, 1440, 480'000));
    photo.assets.emplace_back(QStringLiteral("original"), asset("originals/a1.jpg", 6000, 4000, 4'294'967'296LL));

    BundleItem video;
    video.id = QStringLiteral("v2");
    video.mediaType = QStringLiteral("video");
    video.sourceName = QStringLiteral("clip.mov");
    video.sourceBytes = 0;
    video.sourceCreatedUtc = QStringLiteral("2023-02-01T00:00:00Z");
    video.sourceModifiedUtc = QStringLiteral("2023-02-01T00:00:00Z");
    video.capturedUtc = QStringLiteral("2023-02-01T00:00:00Z");
    video.animated = false;
    BundleAsset clip = asset("media/video/v2.mp4", 1920, 1080, 9'000'000);
    clip.durationSeconds = 12.0;
    clip.container = QStringLiteral("mp4");
    clip.videoCodec = QStringLiteral("h264");
    clip.audioCodec = QStringLiteral("aac");
    clip.hasAudio = true;
    video.assets.emplace_back(QStringLiteral("video"), clip);

    m.items = std::vector<BundleItem> {photo, video};
    m.itemsKeyPresent = true;
    return m;
}

TEST(ManifestRoundTrip, EveryMemberSurvivesWriteAndRead)
{
    const BundleManifest original = completeManifest();
    for (const bool pretty : {true, false}) {
        const QByteArray text = original.toJson().serialize(pretty);
        const BundleManifest read = BundleManifest::fromJson(parseObject(text));
        EXPECT_EQ(read, original) << text.constData();
        EXPECT_EQ(read.totalUnknownMemberCount(), 0);
        // Field by field too, so a failure names what went wrong.
        EXPECT_EQ(read.title, original.title);
        EXPECT_EQ(read.counts, original.counts);
        EXPECT_EQ(read.playback, original.playback);
        EXPECT_EQ(read.display, original.display);
        EXPECT_EQ(read.branding, original.branding);
        EXPECT_EQ(read.players, original.players);
        EXPECT_EQ(read.derivatives, original.derivatives);
    }
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

TEST(ManifestRoundTrip, TopLevelKeysInSchemaOrder)
{
    const QByteArray text = completeManifest().toJson().serialize(true);
    const char *order[] = {"format", "format_version", "min_reader_version", "bundle_id", "title", "created_utc",
        "created_by", "flavor", "include_originals", "counts", "derivatives", "playback", "display", "players",
        "branding", "items"};
    // Top-level members sit one indent (two spaces) deep in pretty output, which
    // keeps nested keys such as counts.items out of the search.
    qsizetype previous = -1;
    for (const char *key : order) {
        const QByteArray marker = QByteArray("\n  \"") + key + "\": ";
        const qsizetype at = text.indexOf(marker);
        ASSERT_GE(at, 0) << key;
        EXPECT_EQ(text.indexOf(marker, at + 1), -1) << key << " appears twice at the top level";
        EXPECT_GT(at, previous) << key << " is out of order";
        previous = at;
    }
    EXPECT_TRUE(text.startsWith("{\n  \"format\": \"sorvane.bundle\","));
    EXPECT_TRUE(text.endsWith("\n}\n"));
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
