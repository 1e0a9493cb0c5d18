#include "bundle/BundleReader.h"
#include "bundle/BundleOrdering.h"
#include "support/BundleFixture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace sorvane {
namespace {

using test::BundleFixture;

// Decodes exactly the files whose content starts with "IMG", like a codec that
// recognises its own signature.
class SignatureProbe final : public BundleAssetProbing {
public:
    std::optional<BundleProbeResult> probe(const QString &filePath) const override
    {
        QFile file(filePath);
        if (!file.open(QIODevice::ReadOnly) || file.read(3) != "IMG")
            return std::nullopt;
        return BundleProbeResult {10, 10, file.size()};
    }
};

BundleOpenOptions withLevel(BundleVerification level)
{
    BundleOpenOptions options;
    options.verification = level;
    options.assetProbe = std::make_shared<SignatureProbe>();
    return options;
}

std::vector<QString> messages(const std::vector<BundleReport> &reports)
{
    std::vector<QString> out;
    for (const auto &report : reports)
        out.push_back(report.message);
    return out;
}

// ---- Fatal errors, in the order the checks run --------------------------------

struct ErrorCase {
    const char *name;
    QByteArray manifest;
    BundleErrorCode code;
    QString message;
    std::optional<QString> jsonPath;
};

class ReaderErrors : public testing::TestWithParam<ErrorCase> { };

TEST_P(ReaderErrors, FailWithTheirCodeMessageAndPath)
{
    const ErrorCase &c = GetParam();
    BundleFixture fixture;
    fixture.writeManifestText(c.manifest);
    const BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.error) << c.name;
    EXPECT_FALSE(result.bundle);
    ASSERT_TRUE(result.integrity);
    EXPECT_EQ(result.error->code, c.code) << c.name;
    EXPECT_EQ(result.error->message, c.message) << c.name;
    EXPECT_EQ(result.error->jsonPath, c.jsonPath) << c.name;
}

const QByteArray head = R"("format":"sorvane.bundle","format_version":2,"min_reader_version":1)";

INSTANTIATE_TEST_SUITE_P(Manifests, ReaderErrors,
    testing::Values(ErrorCase {"array", "[1,2]", BundleErrorCode::manifestMalformed, "Manifest is not a JSON object.",
                        std::nullopt},
        ErrorCase {"no format", R"({"format_version":2,"min_reader_version":1,"items":[]})",
            BundleErrorCode::notABundle, "format is '<absent>', expected 'sorvane.bundle'.", "$.format"},
        ErrorCase {"format with trailing blank", R"({"format":"sorvane.bundle ","items":[]})",
            BundleErrorCode::notABundle, "format is 'sorvane.bundle ', expected 'sorvane.bundle'.", "$.format"},
        ErrorCase {"format checked before versions", R"({"format":"other"})", BundleErrorCode::notABundle,
            "format is 'other', expected 'sorvane.bundle'.", "$.format"},
        ErrorCase {"format_version as text",
            R"({"format":"sorvane.bundle","format_version":"2","min_reader_version":1,"items":[]})",
            BundleErrorCode::manifestMalformed, "format_version is required.", "$.format_version"},
        ErrorCase {"no min_reader_version", R"({"format":"sorvane.bundle","format_version":2,"items":[]})",
            BundleErrorCode::manifestMalformed, "min_reader_version is required.", "$.min_reader_version"},
        ErrorCase {"future reader",
            R"({"format":"sorvane.bundle","format_version":9,"min_reader_version":2,"items":[]})",
            BundleErrorCode::unsupportedFutureVersion, "Bundle requires reader version 2; this reader is version 1.",
            "$.min_reader_version"},
        ErrorCase {"no items", "{" + head + "}", BundleErrorCode::manifestMalformed, "items is required.", "$.items"},
        ErrorCase {"items not an array", "{" + head + R"(,"items":{"id":"a"}})", BundleErrorCode::manifestMalformed,
            "items is required.", "$.items"},
        ErrorCase {"item without id", "{" + head + R"(,"items":[{"id":"a"},{"media_type":"image"}]})",
            BundleErrorCode::manifestMalformed, "an item is missing its id.", "$.items[1].id"},
        ErrorCase {"item not an object", "{" + head + R"(,"items":[{"id":"a"},{"id":"b"},7]})",
            BundleErrorCode::manifestMalformed, "an item is missing its id.", "$.items[2].id"},
        ErrorCase {"empty items", "{" + head + R"(,"items":[]})", BundleErrorCode::noPlayableMedia,
            "Manifest declared 0 items; none of them resolved to a usable asset.", std::nullopt},
        ErrorCase {"every item missing",
            "{" + head + R"(,"items":[{"id":"a","assets":{"full":{"path":"media/a.jpg","bytes":1}}},)"
                + R"({"id":"b","assets":{"full":{"path":"media/b.jpg","bytes":1}}}]})",
            BundleErrorCode::noPlayableMedia, "Manifest declared 2 items; none of them resolved to a usable asset.",
            std::nullopt}),
    [](const testing::TestParamInfo<ErrorCase> &info) { return std::to_string(info.index); });

TEST(BundleReader, AManifestThatCannotBeReadSaysWhy)
{
    QTemporaryDir dir;
    BundleOpenResult result = BundleReader::open(dir.path());
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->code, BundleErrorCode::notABundle);
    EXPECT_EQ(result.error->message, "No bundle.json at this path.");
    EXPECT_EQ(result.error->path, dir.path());
    // A folder named bundle.json is not a manifest either.
    QDir(dir.path()).mkdir("bundle.json");
    EXPECT_EQ(BundleReader::open(dir.path()).error->code, BundleErrorCode::notABundle);

    BundleFixture fixture;
    fixture.writeManifestText("{\"format\": tru}");
    result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.error && result.error->cause);
    EXPECT_FALSE(result.error->cause->isEmpty());
    EXPECT_EQ(result.error->message, "Manifest is not valid JSON: " + *result.error->cause);
    EXPECT_EQ(result.error->path, fixture.manifestPath());

    // A pipe fails without reading forever.
    QFile::remove(fixture.manifestPath());
    ASSERT_EQ(mkfifo(QFile::encodeName(fixture.manifestPath()).constData(), 0600), 0);
    result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->code, BundleErrorCode::manifestUnreadable);
    EXPECT_TRUE(result.error->cause);
    EXPECT_EQ(result.error->message, "Could not read the manifest: " + result.error->cause.value_or(""));
}

TEST(BundleReader, ItemWithoutIdKeepsTheReportsFoundBeforeIt)
{
    BundleFixture fixture;
    BundleItem &first = fixture.addItem("a", {{"full", 10}});
    first.assets[0].second.bytes = 11;
    fixture.manifest.items->push_back(BundleItem {});
    fixture.writeManifest();
    const BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->jsonPath, "$.items[1].id");
    EXPECT_EQ(
        messages(result.standaloneReports), std::vector<QString> {"Item a: full \u2014 expected 11 bytes, found 10."});
}

// ---- Opening ------------------------------------------------------------------

TEST(BundleReader, IntegrityCountsBytesAndItems)
{
    BundleFixture fixture;
    fixture.manifest.formatVersion = 7; // a newer format opens when this reader may read it
    fixture.addItem("a", {{"tile", 100}, {"full", 300}});
    BundleItem &b = fixture.addItem("b", {{"tile", 50}});
    b.assets[0].second.bytes = 60; // short on disk
    fixture.addItem("c", {{"full", 40}});
    fixture.writeManifest();
    // The manifest file opens like its folder.
    const BundleOpenResult result = BundleReader::open(fixture.manifestPath());
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.bundle->rootPath, QDir(fixture.root()).absolutePath());
    const BundleIntegrity &integrity = *result.integrity;
    EXPECT_EQ(result.bundle->integrity, result.integrity);
    EXPECT_EQ(integrity.manifestItemCount, 3);
    EXPECT_EQ(integrity.playableItemCount, 2);
    EXPECT_EQ(integrity.expectedAssetBytes, 100 + 300 + 60 + 40);
    EXPECT_EQ(integrity.resolvedAssetBytes, 100 + 300 + 40);
    ASSERT_EQ(integrity.missingItems.size(), 1u);
    EXPECT_EQ(integrity.missingItems[0],
        (BundleMissingItem {
            "b", BundleReportCode::itemAssetSizeMismatch, "no usable asset survived the resolution ladder"}));
}

struct AssetCase {
    const char *name;
    BundleVerification level;
    QByteArray onDisk; // written at media/x.bin; empty QByteArray() with absent=true means no file
    bool absent;
    std::optional<qint64> bytes; // what the manifest says
    bool shaMatches;
    std::optional<BundleReportCode> code;
    QString detail;
};

class AssetChecks : public testing::TestWithParam<AssetCase> { };

TEST_P(AssetChecks, ReportOrResolve)
{
    const AssetCase &c = GetParam();
    BundleFixture fixture;
    BundleAsset asset = BundleFixture::assetFor("media/x.bin", c.onDisk);
    asset.bytes = c.bytes;
    if (!c.shaMatches)
        asset.sha256 = QString(64, QLatin1Char('0'));
    if (!c.absent)
        fixture.writeFile("media/x.bin", c.onDisk);
    BundleItem item;
    item.id = "x";
    item.assets = {{"full", asset}};
    // A second, healthy item keeps the bundle openable whatever happens to x.
    fixture.manifest.items->push_back(item);
    fixture.addItem("ok", {{"full", 4}});
    fixture.writeFile("media/full/ok.bin", "IMG!");
    fixture.manifest.items->back().assets[0].second = BundleFixture::assetFor("media/full/ok.bin", "IMG!");
    fixture.writeManifest();

    const BundleOpenResult result = BundleReader::open(fixture.root(), withLevel(c.level));
    ASSERT_TRUE(result.ok()) << c.name;
    const bool resolved = result.bundle->item("x") != nullptr;
    EXPECT_EQ(resolved, !c.code) << c.name;
    if (c.code) {
        ASSERT_EQ(result.bundle->reports().size(), 1u) << c.name;
        const BundleReport &report = result.bundle->reports()[0];
        EXPECT_EQ(report.code, *c.code) << c.name;
        EXPECT_EQ(report.message, "Item x: full \u2014 " + c.detail + ".") << c.name;
        EXPECT_EQ(report.itemId, "x");
        EXPECT_EQ(report.assetPath, "media/x.bin");
    } else {
        EXPECT_TRUE(result.bundle->reports().empty()) << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, AssetChecks,
    testing::Values(
        AssetCase {"present", BundleVerification::sizeAndCount, "garbage", false, 7, false, std::nullopt, ""},
        AssetCase {"absent", BundleVerification::sizeAndCount, "", true, 0, true, BundleReportCode::itemAssetMissing,
            "asset file is absent"},
        AssetCase {"short", BundleVerification::sizeAndCount, "IMGabc", false, 9, true,
            BundleReportCode::itemAssetSizeMismatch, "expected 9 bytes, found 6"},
        AssetCase {"no size in manifest", BundleVerification::sizeAndCount, "IMGabc", false, std::nullopt, true,
            BundleReportCode::itemAssetSizeMismatch, "expected <absent> bytes, found 6"},
        AssetCase {"zero bytes passes size", BundleVerification::sizeAndCount, "", false, 0, true, std::nullopt, ""},
        AssetCase {"zero bytes fails decode", BundleVerification::decode, "", false, 0, true,
            BundleReportCode::itemAssetUndecodable, "file is present and exactly the right size but does not decode"},
        AssetCase {"decodes", BundleVerification::decode, "IMGabc", false, 6, false, std::nullopt, ""},
        AssetCase {"hash differs", BundleVerification::full, "IMGabc", false, 6, false,
            BundleReportCode::itemAssetUndecodable, "sha256 does not match the manifest"},
        AssetCase {"hash and decode pass", BundleVerification::full, "IMGabc", false, 6, true, std::nullopt, ""},
        AssetCase {"hash checked before decoding", BundleVerification::full, "xyz", false, 3, false,
            BundleReportCode::itemAssetUndecodable, "sha256 does not match the manifest"}),
    [](const testing::TestParamInfo<AssetCase> &info) { return std::to_string(info.index); });

TEST(BundleReader, PathsOutsideTheRootAreRejected)
{
    QTemporaryDir outside;
    QFile secret(outside.filePath("secret.bin"));
    ASSERT_TRUE(secret.open(QIODevice::WriteOnly));
    secret.write("IMGsecret");
    secret.close();

    BundleFixture fixture;
    QDir(fixture.root()).mkpath("media");
    // A file link and a folder link that lead out, and one link that stays inside.
    ASSERT_TRUE(QFile::link(secret.fileName(), fixture.path("media/link.bin")));
    ASSERT_TRUE(QFile::link(outside.path(), fixture.path("media/linked")));
    fixture.writeFile("media/real.bin", "IMGsecret");
    ASSERT_TRUE(QFile::link(fixture.path("media/real.bin"), fixture.path("media/inner.bin")));

    const QStringList escaping {"../secret.bin", "/etc/hostname", "C:x", "a/../media/real.bin", "media/link.bin",
        "media/linked/secret.bin", "media/linked/../real.bin"};
    for (const QString &path : escaping) {
        BundleItem item;
        item.id = path;
        BundleAsset asset = BundleFixture::assetFor(path, "IMGsecret");
        item.assets = {{"full", asset}};
        fixture.manifest.items->push_back(item);
    }
    BundleItem inner;
    inner.id = "inner";
    inner.assets = {{"full", BundleFixture::assetFor("media//inner.bin", "IMGsecret")}};
    fixture.manifest.items->push_back(inner);
    fixture.writeManifest();

    const BundleOpenResult result = BundleReader::open(fixture.root(), withLevel(BundleVerification::full));
    ASSERT_TRUE(result.ok());
    ASSERT_EQ(result.bundle->items.size(), 1u);
    EXPECT_EQ(result.bundle->items[0]->id, "inner");
    ASSERT_EQ(result.bundle->reports().size(), size_t(escaping.size()));
    for (qsizetype i = 0; i < escaping.size(); ++i) {
        EXPECT_EQ(result.bundle->reports()[size_t(i)].message,
            QStringLiteral("Item %1: full \u2014 '%1' escapes the bundle root.").arg(escaping[i]));
    }
}

TEST(BundleReader, OriginalsAreCountedButNeverRemoveAnItem)
{
    BundleFixture fixture;
    fixture.manifest.includeOriginals = true;
    for (const char *id : {"a", "b", "c"}) {
        BundleItem &item = fixture.addItem(id, {{"full", 8}, {"original", 20}});
        Q_UNUSED(item);
    }
    fixture.addItem("unlisted", {{"full", 8}});
    QFile::remove(fixture.path("media/original/b.bin"));
    (*fixture.manifest.items)[2].assets[1].second.bytes = 21;
    fixture.writeManifest();
    const BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.bundle->items.size(), 4u);
    EXPECT_TRUE(result.integrity->missingItems.empty());
    EXPECT_EQ(result.integrity->expectedOriginalCount, 4);
    EXPECT_EQ(result.integrity->resolvedOriginalCount, 1);
    EXPECT_EQ(result.integrity->expectedAssetBytes, 32); // originals are not assets
    EXPECT_EQ(messages(result.bundle->reports()),
        std::vector<QString> {"3 of 4 originals are absent or short. Playback is unaffected."});

    // Without include_originals nothing about originals is checked.
    fixture.manifest.includeOriginals = false;
    fixture.writeManifest();
    const BundleOpenResult plain = BundleReader::open(fixture.root());
    ASSERT_TRUE(plain.ok());
    EXPECT_TRUE(plain.bundle->reports().empty());
    EXPECT_EQ(plain.integrity->expectedOriginalCount, 0);
}

TEST(BundleReader, UnsupportedAndUnknownMediaAreSkipped)
{
    BundleFixture fixture;
    fixture.addItem("v", {{"video", 8}}, "video");
    fixture.addItem("h", {{"full", 8}}, "hologram");
    fixture.addItem("i", {{"full", 8}});
    fixture.writeManifest();
    BundleOpenOptions options;
    options.supportsVideo = false;
    const BundleOpenResult result = BundleReader::open(fixture.root(), options);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(messages(result.bundle->reports()),
        (std::vector<QString> {"Item v: media_type 'video' is not supported by this reader.",
            "Item h: media_type 'hologram' is unknown to this reader; skipped."}));
    EXPECT_EQ(result.integrity->unsupportedMediaCount, 2);
    EXPECT_EQ(result.bundle->items.size(), 1u);

    const BundleOpenResult withVideo = BundleReader::open(fixture.root());
    ASSERT_TRUE(withVideo.ok());
    ASSERT_NE(withVideo.bundle->item("v"), nullptr);
    EXPECT_EQ(withVideo.bundle->item("v")->mediaType, MediaType::video);
}

TEST(BundleReader, ReportsFollowTheOrderOfTheChecks)
{
    BundleFixture fixture;
    fixture.addItem("a", {{"tile", 3}});
    BundleItem &bad = fixture.addItem("b", {{"tile", 3}});
    bad.assets[0].second.bytes = 4;
    fixture.writeFile("assets/branding/logo.png", "png");
    BundleBrandingJson branding;
    branding.logoAsset = "../logo.png";
    branding.overlay = BundleBrandingOverlayJson {};
    branding.overlay->corner = "middle";
    fixture.manifest.branding = branding;
    fixture.manifest.playback = BundlePlaybackJSON {};
    fixture.manifest.playback->mode = "slides";
    fixture.manifest.playback->unknownMemberCount = 0;
    fixture.writeManifestText(fixture.manifest.toJson().serialize().replace("\"format\"", "\"extra\": 1, \"format\""));
    const BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    const std::vector<BundleReportCode> expected {BundleReportCode::unknownFieldsIgnored,
        BundleReportCode::unknownEnumValueDefaulted, BundleReportCode::unknownEnumValueDefaulted,
        BundleReportCode::brandingLogoAssetMissing, BundleReportCode::itemAssetSizeMismatch};
    std::vector<BundleReportCode> codes;
    for (const auto &report : result.bundle->reports())
        codes.push_back(report.code);
    EXPECT_EQ(codes, expected);
    EXPECT_EQ(
        result.bundle->reports()[0].message, "1 unrecognized manifest member(s) were ignored (forward compatibility).");
    EXPECT_EQ(result.bundle->reports()[2].fieldPath, "branding.overlay.corner");
    EXPECT_EQ(result.bundle->reports()[3].message,
        "branding.logo_asset '../logo.png' is not a safe bundle-relative path; ignored.");
}

TEST(BundleReader, BrandingResolvesItsLogoAndOverlay)
{
    BundleFixture fixture;
    fixture.addItem("a", {{"full", 3}});
    fixture.writeFile("assets/branding/logo.png", "png");
    BundleBrandingJson branding;
    branding.displayName = "Studio";
    branding.logoAsset = "assets/branding/logo.png";
    branding.holding = true;
    branding.overlay = BundleBrandingOverlayJson {};
    branding.overlay->enabled = true;
    branding.overlay->corner = "top_left";
    branding.overlay->opacity = 0.8;
    fixture.manifest.branding = branding;
    fixture.writeManifest();
    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    ASSERT_TRUE(result.bundle->branding);
    const OpenedBundleBranding &opened = *result.bundle->branding;
    EXPECT_EQ(opened.displayName, "Studio");
    EXPECT_TRUE(opened.holding);
    EXPECT_EQ(opened.logoURL, QUrl::fromLocalFile(fixture.path("assets/branding/logo.png")));
    EXPECT_TRUE(opened.overlay.enabled);
    EXPECT_EQ(opened.overlay.corner, OverlayCorner::topLeft);
    EXPECT_DOUBLE_EQ(opened.overlay.opacity, 0.8);
    EXPECT_TRUE(result.bundle->reports().empty());

    QFile::remove(fixture.path("assets/branding/logo.png"));
    result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    EXPECT_FALSE(result.bundle->branding->logoURL);
    EXPECT_EQ(messages(result.bundle->reports()),
        std::vector<QString> {
            "branding.logo_asset 'assets/branding/logo.png' is absent; branding shows without a logo."});
}

// ---- The resolution ladder ----------------------------------------------------

TEST(BundleMediaItem, LadderPrefersTheAskedTierThenFallsBack)
{
    BundleFixture fixture;
    fixture.addItem("a", {{"tile", 3}, {"full", 4}, {"animated", 5}, {"original", 6}}).animated = true;
    fixture.addItem("t", {{"tile", 3}, {"original", 6}});
    fixture.manifest.includeOriginals = true;
    fixture.writeManifest();
    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    const BundleMediaItem &a = *result.bundle->item("a");
    EXPECT_EQ(a.resolvedAsset("tile")->key, "tile");
    EXPECT_EQ(a.resolvedAsset("full")->key, "full");
    EXPECT_EQ(a.resolvedAsset("anything")->key, "full");
    EXPECT_EQ(a.resolvedAsset("animated")->key, "full");
    EXPECT_EQ(a.displayAsset()->key, "animated"); // shown first, ahead of the ladder
    EXPECT_EQ(result.bundle->item("t")->resolvedAsset("full")->key, "tile");

    // Each failure on screen steps one rung down, preferring full, until nothing is left.
    OpenedBundle &bundle = *result.bundle;
    EXPECT_EQ(bundle.markUndecodable("a", "full"), QUrl::fromLocalFile(fixture.path("media/tile/a.bin")));
    EXPECT_EQ(bundle.markUndecodable("a", "tile"), QUrl::fromLocalFile(fixture.path("media/animated/a.bin")));
    EXPECT_EQ(bundle.markUndecodable("a", "animated"), QUrl::fromLocalFile(fixture.path("media/original/a.bin")));
    EXPECT_TRUE(bundle.integrity->missingItems.empty());
    EXPECT_EQ(bundle.markUndecodable("a", "original"), std::nullopt);
    ASSERT_EQ(bundle.integrity->missingItems.size(), 1u);
    EXPECT_EQ(bundle.integrity->missingItems[0],
        (BundleMissingItem {
            "a", BundleReportCode::itemAssetUndecodable, "every rung of the resolution ladder failed to decode"}));
    ASSERT_EQ(bundle.reports().size(), 4u);
    EXPECT_EQ(bundle.reports()[0].message, "Item a: full decoded as garbage; fell down the resolution ladder.");
    EXPECT_EQ(bundle.reports()[0].assetPath, "media/full/a.bin");
    EXPECT_EQ(result.integrity, bundle.integrity);
}

TEST(BundleMediaItem, AnimatedRungIsSkippedWhenAnimationIsNotSupported)
{
    BundleFixture fixture;
    fixture.addItem("a", {{"animated", 5}, {"tile", 3}});
    fixture.addItem("only", {{"animated", 5}});
    fixture.writeManifest();
    BundleOpenOptions options;
    options.supportsAnimation = false;
    const BundleOpenResult result = BundleReader::open(fixture.root(), options);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.bundle->item("a")->resolvedAsset("full")->key, "tile");
    // Its only playable copy cannot be shown, so the item is not kept.
    EXPECT_EQ(result.bundle->item("only"), nullptr);
}

TEST(BundleReader, ItemsAreKeptOnlyWhenTheyHaveSomethingToShow)
{
    BundleFixture fixture;
    fixture.manifest.includeOriginals = true;
    fixture.addItem("stillWithVideoFile", {{"video", 5}});
    fixture.addItem("originalOnly", {{"original", 5}});
    fixture.addItem("videoWithoutPoster", {{"video", 5}}, "video");
    fixture.addItem("videoPosterOnly", {{"full", 5}}, "video");
    fixture.writeManifest();
    const BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    std::vector<QString> kept;
    for (const auto &item : result.bundle->items)
        kept.push_back(item->id);
    EXPECT_EQ(kept, (std::vector<QString> {"videoWithoutPoster", "videoPosterOnly"}));
    EXPECT_EQ(result.integrity->missingItems.size(), 2u);
}

// ---- Play order ---------------------------------------------------------------

TEST(OpenedBundlePlayOrder, TimestampGapFallsBackToManifestOrderWithOneReport)
{
    BundleFixture fixture;
    const char *stamps[]
        = {"2024-05-05T00:00:00Z", "2024-05-04T00:00:00Z", nullptr, "2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z"};
    for (int i = 0; i < 5; ++i) {
        BundleItem &item = fixture.addItem(QString::number(i), {{"full", 3}});
        if (stamps[i])
            item.sourceModifiedUtc = QString::fromLatin1(stamps[i]);
    }
    fixture.manifest.playback = BundlePlaybackJSON {};
    fixture.manifest.playback->sort = "modified";
    fixture.writeManifest();
    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    // The engine, the walls and the image list all ask; the report is filed once.
    EXPECT_EQ(result.bundle->playOrder(), (std::vector<qsizetype> {0, 1, 2, 3, 4}));
    EXPECT_EQ(result.bundle->imageItems().size(), 5u);
    ASSERT_EQ(result.bundle->reports().size(), 1u);
    const BundleReport &report = result.bundle->reports()[0];
    EXPECT_EQ(report.code, BundleReportCode::unknownEnumValueDefaulted);
    EXPECT_EQ(report.fieldPath, "playback.sort");
    EXPECT_EQ(report.unrecognizedValue, "modified");
    EXPECT_EQ(report.defaultUsed, "sequential");
    EXPECT_EQ(report.message,
        "playback.sort needs a per-item timestamp that is missing on at least one item; "
        "played in manifest order instead.");
}

TEST(OpenedBundlePlayOrder, ShuffleSkipsMissingItemsAndKeepsTheRestInShuffledOrder)
{
    BundleFixture fixture;
    for (int i = 0; i < 12; ++i)
        fixture.addItem(QString::number(i), {{"full", 3}});
    fixture.manifest.playback = BundlePlaybackJSON {};
    fixture.manifest.playback->shuffleSeed = 12345;
    fixture.writeManifest();
    for (const int gone : {2, 7, 11})
        QFile::remove(fixture.path(QStringLiteral("media/full/%1.bin").arg(gone)));

    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    const std::vector<qsizetype> order = result.bundle->playOrder();

    // The shuffle is drawn over the whole manifest; missing items simply drop out.
    const auto full = BundleOrdering::order(*fixture.manifest.items, BundleSort::random, 12345).positions;
    std::vector<QString> expected;
    for (const qsizetype position : full) {
        if (position != 2 && position != 7 && position != 11)
            expected.push_back(QString::number(position));
    }
    std::vector<QString> actual;
    for (const qsizetype position : order)
        actual.push_back(result.bundle->items[size_t(position)]->id);
    EXPECT_EQ(actual, expected);
}

TEST(OpenedBundleImageItems, ItemsCarryTheirKindAndFollowThePlayOrder)
{
    BundleFixture fixture;
    fixture.writeFile("media/animated/g.gif", "GIF89a");
    fixture.writeFile("media/video/v.mp4", "mp4");
    fixture.writeFile("media/full/v.jpg", "jpg");
    fixture.addItem("still", {{"full", 3}});
    BundleItem gif;
    gif.id = "g";
    gif.animated = true;
    gif.assets = {{"animated", BundleFixture::assetFor("media/animated/g.gif", "GIF89a")}};
    BundleItem video;
    video.id = "v";
    video.mediaType = "video";
    video.assets = {{"video", BundleFixture::assetFor("media/video/v.mp4", "mp4")},
        {"full", BundleFixture::assetFor("media/full/v.jpg", "jpg")}};
    fixture.manifest.items->push_back(gif);
    fixture.manifest.items->push_back(video);
    fixture.manifest.playback = BundlePlaybackJSON {};
    fixture.manifest.playback->sort = "sequential";
    fixture.writeManifest();

    BundleOpenResult result = BundleReader::open(fixture.root());
    ASSERT_TRUE(result.ok());
    const std::vector<ImageItem> items = result.bundle->imageItems();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].relativePath(), "media/full/still.bin");
    EXPECT_FALSE(items[0].isAnimated());
    EXPECT_EQ(items[1].animationType(), AnimationType::gif);
    EXPECT_EQ(items[1].originalIndex(), 1);
    EXPECT_EQ(items[2].videoTier(), VideoTier::tier1);
    EXPECT_EQ(items[2].url(), QUrl::fromLocalFile(fixture.path("media/video/v.mp4")));

    // Once the video fails on screen the item is its poster, a still.
    result.bundle->markUndecodable("v", "video");
    const auto poster = result.bundle->item("v")->imageItem();
    ASSERT_TRUE(poster);
    EXPECT_EQ(poster->mediaType(), MediaType::image);
    EXPECT_EQ(poster->url(), QUrl::fromLocalFile(fixture.path("media/full/v.jpg")));
}

} // namespace
} // namespace sorvane
