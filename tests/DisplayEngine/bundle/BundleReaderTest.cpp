#include "bundle/BundleReader.h"
#include "bundle/BundleOrdering.h"
#include "support/BundleFixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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
        ErrorCase {"every item missing",
            "{" + head + R"(,"items":[{"id":"a","assets":{"full":{"path":"media/a.jpg","bytes":1}}},)"
                + R"({"id":"b","assets":{"full":{"path":"media/b.jpg","bytes":1}}}]})",
            BundleErrorCode::noPlayableMedia, "Manifest declared 2 items; none of them resolved to a usable asset.",
            std::nullopt}),
    [](const testing::TestParamInfo<ErrorCase> &info) { return std::to_string(info.index); });

TEST(BundleReader, AManifestThatCannotBeReadSaysWhy)
{
    QTemporaryDir dir;
    // A folder named bundle.json is not a manifest either.
    QDir(dir.path()).mkdir("bundle.json");
    EXPECT_EQ(BundleReader::open(dir.path()).error->code, BundleErrorCode::notABundle);

    BundleFixture fixture;
    fixture.writeManifestText("{\"format\": tru}");
    BundleOpenResult result = BundleReader::open(fixture.root());
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

// Makes the files a manifest's items and logo name, each of its declared size; a path under
// absent/ is left out and one under short/ is a byte short.
void makeNamedFiles(const BundleFixture &fixture, const QByteArray &manifest)
{
    const QJsonObject object = QJsonDocument::fromJson(manifest).object();
    std::vector<std::pair<QString, qint64>> files {{object["branding"]["logo_asset"].toString(), 3}};
    for (const QJsonValue &item : object["items"].toArray()) {
        for (const QJsonValue &asset : item["assets"].toObject())
            files.emplace_back(asset["path"].toString(), asset["bytes"].toInteger());
    }
    for (const auto &[path, bytes] : files) {
        if (!path.isEmpty() && !path.startsWith("absent/") && !path.startsWith(".."))
            fixture.writeFile(path, QByteArray(bytes - (path.startsWith("short/") ? 1 : 0), 'x'));
    }
}

QString describe(const BundleIntegrity &i)
{
    QString text = QStringLiteral("%1/%2 items, %3/%4 bytes, %5/%6 originals, %7 unsupported")
                       .arg(i.playableItemCount)
                       .arg(i.manifestItemCount)
                       .arg(i.resolvedAssetBytes)
                       .arg(i.expectedAssetBytes)
                       .arg(i.resolvedOriginalCount)
                       .arg(i.expectedOriginalCount)
                       .arg(i.unsupportedMediaCount);
    for (const BundleMissingItem &missing : i.missingItems)
        text += "; missing " + missing.itemId + " (" + toString(missing.reason) + ": " + missing.detail + ")";
    return text;
}

struct OpenCase {
    const char *name;
    QByteArray members; // after the header
    std::vector<QString> reports; // after the play order is asked for
    const char *shown; // "id:tier" of each item kept, the tier it shows first
    const char *integrity;
    BundleOpenOptions options = {};
};

class ReaderOpens : public testing::TestWithParam<OpenCase> { };

TEST_P(ReaderOpens, WithTheirReportsShownItemsAndCounts)
{
    const OpenCase &c = GetParam();
    BundleFixture fixture;
    const QByteArray manifest = "{" + head + "," + c.members + "}";
    fixture.writeManifestText(manifest);
    makeNamedFiles(fixture, manifest);
    const BundleOpenResult result = BundleReader::open(fixture.manifestPath(), c.options);
    ASSERT_TRUE(result.ok()) << result.error->message.toStdString();
    EXPECT_EQ(result.bundle->rootPath, QDir(fixture.root()).absolutePath());
    EXPECT_EQ(result.bundle->integrity, result.integrity);
    // The engine, the walls and the image list all ask for the order; a report is filed once.
    result.bundle->playOrder();
    result.bundle->imageItems();
    EXPECT_EQ(messages(result.bundle->reports()), c.reports);
    QStringList shown;
    for (const auto &item : result.bundle->items)
        shown << item->id + ":" + item->displayAsset()->key;
    EXPECT_EQ(shown.join(' ').toStdString(), c.shown);
    EXPECT_EQ(describe(*result.integrity).toStdString(), c.integrity);
}

const QByteArray originals = R"("items":[
    {"id":"a","assets":{"full":{"path":"media/a","bytes":8},"original":{"path":"originals/a","bytes":20}}},
    {"id":"b","assets":{"full":{"path":"media/b","bytes":8},"original":{"path":"absent/b","bytes":20}}},
    {"id":"c","assets":{"full":{"path":"media/c","bytes":8},"original":{"path":"short/c","bytes":20}}},
    {"id":"d","assets":{"full":{"path":"media/d","bytes":8}}}])";
const QByteArray media = R"("items":[{"id":"v","media_type":"video","assets":{"video":{"path":"media/v","bytes":8}}},
    {"id":"h","media_type":"hologram","assets":{"full":{"path":"media/h","bytes":8}}},
    {"id":"i","assets":{"full":{"path":"media/i","bytes":8}}}])";

INSTANTIATE_TEST_SUITE_P(Manifests, ReaderOpens,
    testing::Values(
        OpenCase {"a newer format this reader may read, with a short file",
            R"("format_version":7,"items":[
                {"id":"a","assets":{"tile":{"path":"media/a-tile","bytes":100},"full":{"path":"media/a","bytes":300}}},
                {"id":"b","assets":{"tile":{"path":"short/b","bytes":60}}},
                {"id":"c","assets":{"full":{"path":"media/c","bytes":40}}}])",
            {"Item b: tile \u2014 expected 60 bytes, found 59."}, "a:full c:full",
            "2/3 items, 440/500 bytes, 0/0 originals, 0 unsupported; missing b (itemAssetSizeMismatch: no usable "
            "asset survived the resolution ladder)"},
        // Originals are counted but never remove an item, and only checked when the bundle includes them.
        OpenCase {"originals", R"("include_originals":true,)" + originals,
            {"3 of 4 originals are absent or short. Playback is unaffected."}, "a:full b:full c:full d:full",
            "4/4 items, 32/32 bytes, 1/4 originals, 0 unsupported"},
        OpenCase {"originals not included", originals, {}, "a:full b:full c:full d:full",
            "4/4 items, 32/32 bytes, 0/0 originals, 0 unsupported"},
        OpenCase {"video not supported", media,
            {"Item v: media_type 'video' is not supported by this reader.",
                "Item h: media_type 'hologram' is unknown to this reader; skipped."},
            "i:full", "1/3 items, 8/8 bytes, 0/0 originals, 2 unsupported", {.supportsVideo = false}},
        OpenCase {"video supported", media, {"Item h: media_type 'hologram' is unknown to this reader; skipped."},
            "v:video i:full", "2/3 items, 16/16 bytes, 0/0 originals, 1 unsupported"},
        // A still whose only file is a video, an original alone, a video without poster and a poster alone.
        OpenCase {"items are kept only with something to show",
            R"("include_originals":true,"items":[
                {"id":"s","assets":{"video":{"path":"media/s","bytes":5}}},
                {"id":"o","assets":{"original":{"path":"media/o","bytes":5}}},
                {"id":"v","media_type":"video","assets":{"video":{"path":"media/v","bytes":5}}},
                {"id":"p","media_type":"video","assets":{"full":{"path":"media/p","bytes":5}}}])",
            {"3 of 4 originals are absent or short. Playback is unaffected."}, "v:video p:full",
            "2/4 items, 15/15 bytes, 1/4 originals, 0 unsupported; missing s (itemAssetMissing: no usable asset "
            "survived the resolution ladder); missing o (itemAssetMissing: no usable asset survived the resolution "
            "ladder)"},
        // Without animation the animated rung is skipped; an item with nothing else is not kept.
        OpenCase {"animation not supported",
            R"("items":[{"id":"a","animated":true,"assets":{"animated":{"path":"media/a.gif","bytes":5},
                                                            "tile":{"path":"media/a","bytes":3}}},
                        {"id":"g","animated":true,"assets":{"animated":{"path":"media/g.gif","bytes":5}}}])",
            {}, "a:tile",
            "1/2 items, 13/13 bytes, 0/0 originals, 0 unsupported; missing g (itemAssetMissing: no usable asset "
            "survived the resolution ladder)",
            {.supportsAnimation = false}},
        OpenCase {"reports follow the order of the checks",
            R"("extra":1,"playback":{"mode":"slides"},
                "branding":{"logo_asset":"../logo.png","overlay":{"corner":"middle"}},
                "items":[{"id":"a","assets":{"tile":{"path":"short/a","bytes":3}}},
                         {"id":"b","assets":{"tile":{"path":"media/b","bytes":3}}}])",
            {"1 unrecognized manifest member(s) were ignored (forward compatibility).",
                "playback.mode held unrecognized value 'slides'; used 'standard'.",
                "branding.overlay.corner held unrecognized value 'middle'; used 'bottom_right'.",
                "branding.logo_asset '../logo.png' is not a safe bundle-relative path; ignored.",
                "Item a: tile \u2014 expected 3 bytes, found 2."},
            "b:tile",
            "1/2 items, 3/6 bytes, 0/0 originals, 0 unsupported; missing a (itemAssetSizeMismatch: no usable asset "
            "survived the resolution ladder)"},
        // Links that lead out are tried on the real programs by the hostile-input suite.
        OpenCase {"a path that leaves the root",
            R"("items":[{"id":"e","assets":{"full":{"path":"../x","bytes":3}}},
                        {"id":"a","assets":{"full":{"path":"media/a","bytes":3}}}])",
            {"Item e: full \u2014 '../x' escapes the bundle root."}, "a:full",
            "1/2 items, 3/6 bytes, 0/0 originals, 0 unsupported; missing e (itemAssetMissing: no usable asset "
            "survived the resolution ladder)"},
        OpenCase {"absent logo",
            R"("branding":{"logo_asset":"absent/logo.png"},"items":[{"id":"a","assets":{"full":{"path":"media/a","bytes":3}}}])",
            {"branding.logo_asset 'absent/logo.png' is absent; branding shows without a logo."}, "a:full",
            "1/1 items, 3/3 bytes, 0/0 originals, 0 unsupported"},
        // A date order with one date missing plays in manifest order, saying so once.
        OpenCase {"date order without every date",
            R"("playback":{"sort":"modified"},"items":[
                {"id":"a","source_modified_utc":"2024-05-02T00:00:00Z","assets":{"full":{"path":"media/a","bytes":3}}},
                {"id":"b","assets":{"full":{"path":"media/b","bytes":3}}}])",
            {"playback.sort needs a per-item timestamp that is missing on at least one item; played in manifest "
             "order instead."},
            "a:full b:full", "2/2 items, 6/6 bytes, 0/0 originals, 0 unsupported"}),
    [](const testing::TestParamInfo<OpenCase> &info) { return std::to_string(info.index); });

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
        AssetCase {"hash differs", BundleVerification::full, "IMGabc", false, 6, false,
            BundleReportCode::itemAssetUndecodable, "sha256 does not match the manifest"},
        AssetCase {"hash checked before decoding", BundleVerification::full, "xyz", false, 3, false,
            BundleReportCode::itemAssetUndecodable, "sha256 does not match the manifest"}),
    [](const testing::TestParamInfo<AssetCase> &info) { return std::to_string(info.index); });

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
    EXPECT_EQ(*a.resolvedAsset("anything"), *a.resolvedAsset("full"));
    EXPECT_EQ(a.resolvedAsset("animated")->key, "full");
    EXPECT_EQ(a.displayAsset()->key, "animated"); // shown first, ahead of the ladder
    // As the player lists it: an animation, its kind taken from the file name.
    const auto listed = a.imageItem();
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->relativePath(), "media/animated/a.bin");
    EXPECT_TRUE(listed->isAnimated() && listed->animationType() == AnimationType::gif);
    EXPECT_EQ(listed->mediaType(), MediaType::image);
    EXPECT_EQ(listed->videoTier(), std::nullopt);
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

// ---- Play order ---------------------------------------------------------------

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

} // namespace
} // namespace sorvane
