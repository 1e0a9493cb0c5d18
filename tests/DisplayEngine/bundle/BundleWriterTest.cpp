#include "bundle/BundleWriter.h"
#include "bundle/BundleReader.h"
#include "bundle/BundleShortIds.h"
#include "bundle/Sha256.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::readAll;

// Stands in for a real codec: a file is a photo when it starts with "IMG";
// "ANIM" makes it animated, "ALPHA" gives it transparency, "BROKEN" makes it
// fail to decode past its header. Derivatives record their source's content.
class FakeEncoder final : public BundleDerivativeEncoding {
public:
    std::optional<BundleImageInfo> inspect(const QString &source) const override
    {
        const QByteArray content = readAll(source);
        if (!content.startsWith("IMG"))
            return std::nullopt;
        return BundleImageInfo {4000, 3000, content.contains("ANIM") ? 5 : 1, content.contains("ALPHA")};
    }
    BundleDerivativeResult encode(
        const QString &source, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const override
    {
        const QByteArray content = readAll(source);
        if (!content.startsWith("IMG") || content.contains("BROKEN"))
            return {{}, QStringLiteral("not decodable")};
        return write(content, tiers, baseName, content.contains("ALPHA") ? ".png" : ".jpg");
    }
    BundleDerivativeResult encode(const BundleRasterImage &image, const std::vector<BundleTierTarget> &tiers,
        const QString &baseName) const override
    {
        return write(image.rgb, tiers, baseName, ".jpg");
    }
    std::optional<QString> writePng(const QString &source, const QString &destination) const override
    {
        QFile file(destination);
        if (!file.open(QIODevice::WriteOnly))
            return file.errorString();
        file.write("PNG:" + readAll(source));
        return std::nullopt;
    }

private:
    static BundleDerivativeResult write(const QByteArray &content, const std::vector<BundleTierTarget> &tiers,
        const QString &baseName, const char *extension)
    {
        BundleDerivativeResult result;
        for (const BundleTierTarget &tier : tiers) {
            const QString path = tier.directory + "/" + baseName + extension;
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly))
                return {{}, file.errorString()};
            const QByteArray bytes = tier.name.toUtf8() + ":" + content;
            if (file.write(bytes) != bytes.size() || !file.flush())
                return {{}, file.errorString()};
            result.files.push_back({tier.name, path, bytes.size(), tier.longEdge, tier.longEdge * 3 / 4});
        }
        return result;
    }
};

// A file is a video with a poster when it starts with "VID"; "LATE" gives the
// poster from the fallback time, "NOPOSTER" gives none.
class FakeVideoSource final : public BundleVideoSourcing {
public:
    BundleVideoInspection inspect(const QString &video) const override
    {
        const QByteArray content = readAll(video);
        if (!content.startsWith("VID"))
            return {.error = QStringLiteral("Invalid data found when processing input")};
        BundleVideoInspection found {
            std::nullopt, 4.0, 320, 240, "mp4", "h264", "aac", true, BundlePosterOutcome::unavailable, std::nullopt};
        if (!content.contains("NOPOSTER")) {
            found.poster = BundleRasterImage {2, 1, QByteArray("poster")};
            found.posterOutcome
                = content.contains("LATE") ? BundlePosterOutcome::fallback : BundlePosterOutcome::firstAttempt;
        }
        return found;
    }
};

class BundleWriterTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(sources.isValid());
        ASSERT_TRUE(destination.isValid());
        request.sourceFolders = {sources.path()};
        request.destinationDirectory = destination.path();
        request.bundleFolderName = "Trip";
        request.title = "Trip";
        request.emitSha256 = true;
        request.derivativeEncoder = std::make_shared<FakeEncoder>();
        request.videoSource = std::make_shared<FakeVideoSource>();
        request.appName = "sorvane";
        request.appVersion = "test";
        request.jobs = 2;
    }

    QString source(const QString &relative, const QByteArray &content) const
    {
        const QString path = sources.filePath(relative);
        QDir().mkpath(QFileInfo(path).absolutePath());
        EXPECT_TRUE(test::writeAll(path, content));
        return path;
    }

    static QString shortId(const QByteArray &content) { return Sha256::ofBytes(content).left(16); }

    QStringList destinationEntries() const
    {
        return QDir(destination.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir sources;
    QTemporaryDir destination;
    BundleWriteRequest request;
};

TEST_F(BundleWriterTest, WritesABundleThatOpensAtEveryLevel)
{
    source("a.jpg", "IMG photo a");
    source("b/b.png", "IMG ALPHA photo b");
    source("b/copy-of-a.jpg", "IMG photo a");
    source("c.jpg", "IMG BROKEN");
    source("clip.mp4", "VID clip");
    source("notes.txt", "not media");
    source(".hidden.jpg", "IMG hidden");
    request.title = QStringLiteral("Été!");

    const BundleWriteResult result = BundleWriter::write(request);
    ASSERT_TRUE(result.ok()) << qPrintable(result.errorMessage.value_or(""));
    EXPECT_EQ(result.bundlePath, destination.filePath("Trip"));
    EXPECT_EQ(destinationEntries(), QStringList {"Trip"}); // no staging left behind
    EXPECT_EQ(result.itemsWritten, 3);
    EXPECT_EQ(result.duplicateSourceCount, 1);
    EXPECT_EQ(result.undecodableSourceCount, 1);
    EXPECT_EQ(result.assetFilesWritten, 3 * 2 + 1); // two tiers each, and the video
    // Sources are taken folders-last in name order: a.jpg, c.jpg, clip.mp4, then b/.
    ASSERT_EQ(result.reports.size(), 2u);
    EXPECT_EQ(result.reports[0].message, "copy-of-a.jpg has the same content as a.jpg; exported once.");
    EXPECT_EQ(result.reports[0].sourcePath, sources.filePath("b/copy-of-a.jpg"));
    EXPECT_EQ(result.reports[1].message, "c.jpg could not be decoded and was left out.");

    const BundleOpenResult opened = BundleReader::open(*result.bundlePath, {BundleVerification::full, {}, true, true});
    ASSERT_TRUE(opened.ok());
    EXPECT_TRUE(opened.bundle->reports().empty());
    const BundleManifest &m = opened.bundle->manifest;
    EXPECT_EQ(readAll(*result.bundlePath + "/README.txt"),
        QStringLiteral("Été!\n====\n\nThis folder is a Sorvane slideshow bundle.\n\n"
                       "Photos and videos: 3\nCreated: %1\n\n"
                       "To play it: open this folder in Vindra or Sorvane.\n\n"
                       "You can copy this whole folder anywhere \u2014 a USB stick, another computer,\n"
                       "or a cloud drive. Keep the folder together; the files inside refer to each "
                       "other.\n")
            .arg(*m.createdUtc)
            .toUtf8());
    EXPECT_EQ(m.createdBy->app, "sorvane");
    EXPECT_EQ(m.flavor, "media-only");
    EXPECT_EQ(m.counts->items, 3);
    EXPECT_EQ(m.counts->assetFiles, 7);
    EXPECT_EQ(m.counts->assetBytes, result.assetBytesWritten);
    ASSERT_EQ(m.items->size(), 3u);
    const BundleItem &a = (*m.items)[0];
    EXPECT_EQ(a.id, shortId("IMG photo a"));
    EXPECT_EQ(a.asset("tile")->path, "media/tile/" + shortId("IMG photo a") + ".jpg");
    EXPECT_EQ(a.asset("full")->w, 2160);
    EXPECT_FALSE(a.sourceName); // names only when asked for
    const BundleItem &clip = (*m.items)[1];
    EXPECT_EQ(clip.mediaType, "video");
    EXPECT_EQ(clip.asset("video")->path, "media/video/" + shortId("VID clip") + ".mp4");
    EXPECT_EQ(clip.asset("video")->durationSeconds, 4.0);
    EXPECT_EQ(clip.asset("video")->videoCodec, "h264");
    EXPECT_EQ(clip.asset("video")->hasAudio, true);
    EXPECT_EQ(clip.asset("video")->sha256, Sha256::ofBytes("VID clip"));
    EXPECT_NE(clip.asset("full"), nullptr); // its poster
    EXPECT_EQ((*m.items)[2].asset("full")->path, "media/full/" + shortId("IMG ALPHA photo b") + ".png");
}

TEST_F(BundleWriterTest, SameSourcesGiveTheSameBundleWhateverTheJobs)
{
    for (int i = 0; i < 24; ++i)
        source(QStringLiteral("set/%1.jpg").arg(i, 2, 10, QLatin1Char('0')), "IMG photo " + QByteArray::number(i));
    source("set/dup.jpg", "IMG photo 3");
    source("set/bad.jpg", "IMG BROKEN");
    auto manifestWith = [&](int jobs) {
        request.jobs = jobs;
        request.bundleFolderName = QStringLiteral("jobs-%1").arg(jobs);
        const BundleWriteResult result = BundleWriter::write(request);
        EXPECT_TRUE(result.ok());
        QJsonObject manifest = QJsonDocument::fromJson(readAll(*result.bundlePath + "/bundle.json")).object();
        manifest.remove("created_utc");
        manifest.remove("bundle_id");
        return std::pair {manifest, result.reports};
    };
    const auto one = manifestWith(1);
    const auto four = manifestWith(4);
    EXPECT_EQ(one.first, four.first);
    EXPECT_EQ(one.second, four.second);
}

TEST_F(BundleWriterTest, WithPlayerChecksComeFirstThenThePayloadIsCopiedAndNamed)
{
    source("a.jpg", "IMG a");
    request.destinationDirectory = destination.filePath("not-yet");
    request.flavor = BundleFlavor::withPlayer;
    request.playerReaderCapabilityVersion = 0;
    request.playerPayloadDirectory = sources.path();
    BundleWriteResult result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::playerTooOldForBundle);
    EXPECT_EQ(result.errorMessage,
        "The bundled player reads format version 0, but this bundle requires 1. Refusing "
        "to write a stick whose own player would reject it.");

    request.playerReaderCapabilityVersion = 1;
    request.playerPayloadDirectory.reset();
    result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::playerPayloadMissing);
    EXPECT_EQ(
        result.errorMessage, "A with-player export needs a player payload directory. (M4 produces the real one.)");
    EXPECT_FALSE(QFileInfo::exists(request.destinationDirectory));

    // With a payload the player is copied in and named in the manifest.
    request.destinationDirectory = destination.path();
    QTemporaryDir payload;
    QDir(payload.path()).mkpath("lib");
    ASSERT_TRUE(test::writeAll(payload.filePath("Slidora"), "#!/bin/sh\n"));
    ASSERT_TRUE(test::writeAll(payload.filePath("lib/libx.so"), QByteArray(1000, 'x')));
    request.playerPayloadDirectory = payload.path();
    request.playerPlatform = "linux-x86_64";
    request.playerEntryFileName = "Slidora";
    request.playerVersion = "0.1.0";
    result = BundleWriter::write(request);
    ASSERT_TRUE(result.ok()) << qPrintable(result.errorMessage.value_or(""));
    EXPECT_EQ(result.playerBytesWritten, 1010);
    EXPECT_EQ(readAll(*result.bundlePath + "/player/lib/libx.so").size(), 1000);
    const BundleManifest m = BundleReader::open(*result.bundlePath).bundle->manifest;
    ASSERT_TRUE(m.players && m.players->size() == 1);
    EXPECT_EQ((*m.players)[0], (BundlePlayerEntry {"linux-x86_64", "Slidora", "player", "0.1.0", 1, 1010}));
    EXPECT_EQ(m.flavor, "with-player");
    EXPECT_TRUE(readAll(*result.bundlePath + "/README.txt").contains("open \"bundle.json\"'s folder with the player"));
}

TEST_F(BundleWriterTest, NothingToExportFailsAndLeavesNothing)
{
    source("notes.txt", "text");
    BundleWriteResult result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::noSourceMedia);
    EXPECT_EQ(result.errorMessage, "No supported media found in the sources.");

    source("a.jpg", "IMG BROKEN");
    source("b.mp4", "VID NOPOSTER");
    result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::noSourceMedia);
    EXPECT_EQ(result.errorMessage, "Nothing could be exported: no source file produced a usable derivative.");
    std::vector<BundleWriteReportCode> codes;
    for (const auto &report : result.reports)
        codes.push_back(report.code);
    EXPECT_EQ(
        codes, (std::vector {BundleWriteReportCode::sourceUndecodable, BundleWriteReportCode::videoPosterUnavailable}));
    EXPECT_EQ(result.videoPosterUnavailableCount, 1);
    EXPECT_TRUE(destinationEntries().isEmpty()) << qPrintable(destinationEntries().join(','));
}

TEST_F(BundleWriterTest, NamesAreUniquedOrReplacedUntilTheyRunOut)
{
    source("a.jpg", "IMG a");
    EXPECT_EQ(BundleWriter::write(request).bundlePath, destination.filePath("Trip"));
    request.writeReadme = false;
    EXPECT_EQ(BundleWriter::write(request).bundlePath, destination.filePath("Trip 2"));
    EXPECT_FALSE(QFile::exists(destination.filePath("Trip 2/README.txt")));
    QDir(destination.path()).mkdir("Trip 3");

    source("b.jpg", "IMG b");
    request.replaceExisting = true;
    const BundleWriteResult replaced = BundleWriter::write(request);
    EXPECT_EQ(replaced.bundlePath, destination.filePath("Trip"));
    EXPECT_TRUE(replaced.replacedExistingBundle);
    EXPECT_EQ(BundleReader::open(*replaced.bundlePath).bundle->items.size(), 2u);

    // A folder of that name that is not a bundle is never replaced.
    request.bundleFolderName = "Trip 3";
    const BundleWriteResult spared = BundleWriter::write(request);
    EXPECT_EQ(spared.bundlePath, destination.filePath("Trip 3 2"));
    EXPECT_FALSE(spared.replacedExistingBundle);
    EXPECT_TRUE(QDir(destination.filePath("Trip 3")).isEmpty());

    // Until the names run out, of bundles and of staging folders.
    request.bundleFolderName = "N";
    QDir dest(destination.path());
    dest.mkdir("N");
    for (int k = 2; k <= 999; ++k)
        dest.mkdir(QStringLiteral("N %1").arg(k));
    request.replaceExisting = false;
    BundleWriteResult result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::writeFailed);
    EXPECT_EQ(result.errorMessage, "Every folder name from 'N' to 'N 999' is already taken.");
    EXPECT_FALSE(dest.exists(".bundle-staging"));

    request.bundleFolderName = "S";
    dest.mkpath(".bundle-staging/S.partial");
    for (int k = 2; k <= 999; ++k)
        dest.mkpath(QStringLiteral(".bundle-staging/S.%1.partial").arg(k));
    result = BundleWriter::write(request);
    EXPECT_EQ(result.errorMessage, "No free staging folder name for 'S'.");
}

TEST_F(BundleWriterTest, CancellingRemovesEverything)
{
    for (int i = 0; i < 10; ++i)
        source(QStringLiteral("%1.jpg").arg(i), "IMG " + QByteArray::number(i));
    for (const BundleWritePhase phase : {BundleWritePhase::hashing, BundleWritePhase::writingDerivatives}) {
        std::atomic<bool> cancel {false};
        const BundleWriteResult result = BundleWriter::write(
            request, [&](const BundleWriteProgress &p) { cancel = cancel || (p.phase == phase && p.completed >= 2); },
            [&] { return cancel.load(); });
        EXPECT_EQ(result.errorCode, BundleWriteErrorCode::cancelled);
        EXPECT_EQ(result.errorMessage, "Cancelled.");
        EXPECT_TRUE(destinationEntries().isEmpty()) << qPrintable(destinationEntries().join(','));
    }
}

TEST_F(BundleWriterTest, AnimationsUpToTheCapStayAnimated)
{
    const qint64 cap = 26214400;
    QByteArray atCap = "IMG ANIM";
    atCap.resize(cap, ' ');
    QByteArray overCap = "IMG ANIM over";
    overCap.resize(cap + 1, ' ');
    source("at-cap.gif", atCap);
    source("over-cap.gif", overCap);
    source("still.gif", "IMG just one frame");
    const BundleWriteResult result = BundleWriter::write(request);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.animatedDowngradedCount, 1);
    ASSERT_EQ(result.reports.size(), 1u);
    EXPECT_EQ(result.reports[0].message, "over-cap.gif is 25 MB, over the 25 MB animation cap; exported as a still.");
    const BundleManifest m = BundleReader::open(*result.bundlePath).bundle->manifest;
    const BundleItem &animated = (*m.items)[0];
    EXPECT_EQ(animated.animated, true);
    EXPECT_EQ(animated.asset("animated")->path, "media/animated/" + animated.id.value() + ".gif");
    EXPECT_EQ(animated.asset("animated")->bytes, cap);
    EXPECT_FALSE((*m.items)[1].animated);
    EXPECT_EQ((*m.items)[1].asset("animated"), nullptr);
    EXPECT_EQ((*m.items)[2].asset("animated"), nullptr);
}

TEST_F(BundleWriterTest, UnreadableSourcesAndVideosWithoutAGoodPosterAreReported)
{
    source("late.mp4", "VID LATE");
    source("none.mov", "VID NOPOSTER");
    source("text.mp4", "not a video");
    source("a.jpg", "IMG a");
    request.sourceFiles = {sources.filePath("missing.jpg")};
    BundleWriteResult result = BundleWriter::write(request);
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.videoPosterFallbackCount, 1);
    EXPECT_EQ(result.videoPosterUnavailableCount, 2);
    ASSERT_EQ(result.reports.size(), 4u);
    EXPECT_EQ(result.reports[0].code, BundleWriteReportCode::sourceUndecodable);
    EXPECT_TRUE(result.reports[0].message.startsWith("missing.jpg could not be read: "))
        << qPrintable(result.reports[0].message);
    std::vector<QString> messages;
    for (size_t i = 1; i < result.reports.size(); ++i)
        messages.push_back(result.reports[i].message);
    EXPECT_EQ(messages,
        (std::vector<QString> {"late.mp4: poster came from the fallback timestamp.",
            "none.mov could not produce a poster frame and was left out.",
            "text.mp4 could not produce a poster frame and was left out."}));
    EXPECT_EQ(result.itemsWritten, 2);

    request.sourceFiles.clear();

    request.includeVideos = false;
    result = BundleWriter::write(request);
    EXPECT_EQ(result.itemsWritten, 1);
    EXPECT_TRUE(result.reports.empty());
}

TEST_F(BundleWriterTest, OriginalsSourceNamesBrandingAndPreferencesAreWrittenWhenAsked)
{
    source("a.jpg", "IMG a");
    const QString logo = source("logo.jpg", "IMG logo");
    request.sourceFolders.clear();
    request.sourceFiles = {sources.filePath("a.jpg")};
    request.includeOriginals = true;
    request.includeSourceNames = true;
    BundleWriteBranding branding;
    branding.displayName = "Studio";
    branding.logoFile = logo;
    branding.overlayEnabled = true;
    branding.overlayCorner = OverlayCorner::topLeft;
    request.branding = branding;
    request.playback.sort = BundleSort::modified;
    request.playback.shuffleSeed = -5;
    request.playback.background = BundleBackground::darkGray;
    request.playback.flow.weightMode = FlowWeightMode::weighted;
    request.playback.intervalSeconds = 7.5;
    request.display.preferredSyncMode = SyncMode::phased;
    request.display.preferredPerScreen = {{2, DisplayMode::collage, CollageLayout::scatter}};
    std::vector<BundleWritePhase> phases;
    const BundleWriteResult result = BundleWriter::write(request, [&](const BundleWriteProgress &p) {
        EXPECT_LE(p.completed, p.total == 0 ? p.completed : p.total);
        if (phases.empty() || phases.back() != p.phase)
            phases.push_back(p.phase);
    });
    ASSERT_TRUE(result.ok()) << qPrintable(result.errorMessage.value_or(""));
    EXPECT_EQ(phases,
        (std::vector {BundleWritePhase::scanning, BundleWritePhase::hashing, BundleWritePhase::writingDerivatives,
            BundleWritePhase::copyingOriginals, BundleWritePhase::writingManifest, BundleWritePhase::finalizing}));
    EXPECT_EQ(result.originalsWritten, 1);
    EXPECT_EQ(result.originalBytesWritten, 5);
    const BundleOpenResult opened = BundleReader::open(*result.bundlePath, {BundleVerification::full, {}, true, true});
    ASSERT_TRUE(opened.ok());
    EXPECT_TRUE(opened.bundle->reports().empty());
    const BundleItem &item = (*opened.bundle->manifest.items)[0];
    EXPECT_EQ(item.sourceName, "a.jpg");
    EXPECT_EQ(item.asset("original")->path, "originals/" + *item.id + ".jpg");
    EXPECT_EQ(opened.integrity->resolvedOriginalCount, 1);
    EXPECT_EQ(readAll(*result.bundlePath + "/assets/branding/logo.png"), "PNG:IMG logo");
    ASSERT_TRUE(opened.bundle->branding);
    EXPECT_EQ(opened.bundle->branding->displayName, "Studio");
    EXPECT_EQ(opened.bundle->branding->overlay.corner, OverlayCorner::topLeft);
    EXPECT_TRUE(opened.bundle->branding->logoURL.has_value());
    EXPECT_EQ(opened.bundle->playback, request.playback);
    EXPECT_EQ(opened.bundle->display, request.display);
    // The source's file dates are recorded, so a date order can be honoured.
    EXPECT_TRUE(item.sourceModifiedUtc);
    EXPECT_TRUE(item.sourceCreatedUtc);
}

TEST_F(BundleWriterTest, ScanningSkipsBundlesAndHiddenFoldersAndSurvivesLinkLoops)
{
    source("a.jpg", "IMG a");
    source("deep/er/b.jpg", "IMG b");
    source(".stash/c.jpg", "IMG hidden folder");
    ASSERT_TRUE(QFile::link(sources.path(), sources.filePath("deep/loop")));
    request.destinationDirectory = sources.path();
    const BundleSourceScan scan = BundleWriter::scan(request);
    QStringList found;
    for (const BundleSourceFile &file : scan.sources)
        found << QDir(sources.path()).relativeFilePath(file.path);
    EXPECT_EQ(found, (QStringList {"a.jpg", "deep/er/b.jpg"}));

    // Exporting a folder into itself, twice: the first bundle is not a source of the second.
    const BundleWriteResult first = BundleWriter::write(request);
    ASSERT_TRUE(first.ok());
    const BundleWriteResult second = BundleWriter::write(request);
    EXPECT_EQ(second.itemsWritten, 2);
    EXPECT_TRUE(second.reports.empty());

    // A source folder inside the destination is scanned like any other.
    QFile::remove(sources.filePath("deep/loop"));
    request.sourceFolders = {sources.filePath("deep")};
    request.destinationDirectory = sources.path();
    EXPECT_EQ(BundleWriter::scan(request).sources.size(), 1u);
}

TEST_F(BundleWriterTest, DestinationsThatFailAreReportedWithTheSystemsReason)
{
    source("a.jpg", "IMG a");
    ASSERT_TRUE(test::writeAll(destination.filePath("file"), ""));
    request.destinationDirectory = destination.filePath("file/inside");
    const BundleWriteResult result = BundleWriter::write(request);
    EXPECT_EQ(result.errorCode, BundleWriteErrorCode::destinationUnwritable);
    EXPECT_EQ(result.errorMessage, "Could not prepare the destination: Not a directory");
    // A full or read-only stick is left to the hostile suite, which mounts one.
}

TEST(BundleShortIds, CollidingPrefixesAreExtendedTogether)
{
    const QString x16 = QString(16, QLatin1Char('a'));
    const std::vector<QString> digests {x16 + QString(48, QLatin1Char('1')), QString(64, QLatin1Char('b')),
        x16 + QString(48, QLatin1Char('2')), x16 + QString(48, QLatin1Char('3'))};
    const BundleShortIds ids = BundleShortIds::assign(digests);
    EXPECT_EQ(ids.ids,
        (std::vector<QString> {x16 + QString(16, QLatin1Char('1')), QString(16, QLatin1Char('b')),
            x16 + QString(16, QLatin1Char('2')), x16 + QString(16, QLatin1Char('3'))}));
    EXPECT_EQ(ids.extended, (std::vector<std::pair<QString, int>> {{x16, 3}}));
}

} // namespace
} // namespace sorvane
