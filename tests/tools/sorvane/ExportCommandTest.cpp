#include "CliTestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::CommandCase;
using test::expectCommandOutcomes;
using test::Outcome;
using test::run;
using test::sorvane;

QJsonObject readJson(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return QJsonDocument::fromJson(file.readAll()).object();
}

// A folder of three different real JPEG photos, taken from the sample bundle.
class ExportCommand : public test::SampleBundleSuite {
protected:
    static void SetUpTestSuite()
    {
        ASSERT_NO_FATAL_FAILURE(SampleBundleSuite::SetUpTestSuite());
        QDir().mkpath(photos());
        const QFileInfoList jpegs = QDir(samplePhotos()).entryInfoList({"*.jpg"}, QDir::Files);
        ASSERT_GE(jpegs.size(), 3);
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(
                QFile::copy(jpegs[i].absoluteFilePath(), photos() + QStringLiteral("/photo-%1.jpg").arg(i + 1)));
    }
    static QString photos() { return suitePath("photos"); }
    static QString samplePhotos() { return sampleRoot() + "/media/full"; }

    // Enough photos that encoding them takes a moment: copies of the samples, each
    // made unique by bytes after the image data, which decoders ignore.
    QString manyPhotos() const
    {
        const QString sources = out.filePath("many");
        QDir().mkpath(sources);
        const QFileInfoList samples = QDir(samplePhotos()).entryInfoList({"*.jpg"}, QDir::Files);
        for (int copy = 0; copy < 60; ++copy) {
            QFile source(samples[copy % samples.size()].absoluteFilePath());
            EXPECT_TRUE(source.open(QIODevice::ReadOnly));
            QFile target(sources + QStringLiteral("/copy-%1.jpg").arg(copy));
            EXPECT_TRUE(target.open(QIODevice::WriteOnly));
            target.write(source.readAll() + QByteArray(1 + copy / samples.size(), 'x'));
        }
        return sources;
    }

    // Starts exporting `sources` as dest/Many and reads its standard error until it is writing
    // derivatives (or has stopped), returning what it read.
    QByteArray startExportUntilWriting(QProcess &process, const QString &sources) const
    {
        process.start(test::sorvaneProgram(), {"export", sources, "--to", out.filePath("dest"), "--name", "Many"});
        process.setReadChannel(QProcess::StandardError);
        QByteArray err;
        while (!err.contains("Writing derivatives...") && process.waitForReadyRead(60000))
            err += process.readAllStandardError();
        return err;
    }

    QTemporaryDir out;
};

TEST_F(ExportCommand, UsageErrorsExitTwoAndHelpExitsZero)
{
    const CommandCase cases[] = {
        {{"export"}, 2, "sorvane export: no source given"},
        {{"export", photos()}, 2, "no destination given (use --to DIR)."},
        {{"export", out.filePath("nothing-here"), "--to", out.path()}, 2, "no such file or folder"},
        {{"export", photos(), "--to", out.path(), "--mode", "slides"}, 2,
            "unknown value 'slides' for --mode (use standard or collage)."},
        {{"export", photos(), "--to", out.path(), "--interval", "soon"}, 2, "invalid value 'soon' for --interval"},
        {{"export", photos(), "--to", out.path(), "--colour"}, 2, "Unknown option 'colour'"},
        {{"export", photos(), "--to", out.path(), "--colour"}, 2, "Run 'sorvane export --help' for usage."},
        {{"export", "--help"}, 0, "Usage: sorvane export [options] SOURCE... --to DIR"},
        {{"export", "--help"}, 0, "130  the export was cancelled"},
        {{"--help"}, 0, "export    Make a bundle"},
    };
    expectCommandOutcomes(cases);
    // Nothing was made by any of them.
    EXPECT_TRUE(QDir(out.path()).isEmpty());
}

TEST_F(ExportCommand, DryRunOfAFolderWithoutMediaFails)
{
    QDir().mkpath(out.filePath("empty"));
    const Outcome result = sorvane({"export", out.filePath("empty"), "--to", out.filePath("dest"), "--dry-run"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.contains("sorvane export: noSourceMedia: No supported media found in the sources."))
        << qPrintable(result.err);
    EXPECT_FALSE(QFileInfo::exists(out.filePath("dest")));
}

TEST_F(ExportCommand, DryRunCountsAndEstimatesButWritesNothing)
{
    const QString destination = out.filePath("not/made/yet");
    const Outcome result
        = sorvane({"export", photos(), "--to", destination, "--name", "Trip", "--originals", "--dry-run"});
    EXPECT_FALSE(QFileInfo::exists(out.filePath("not")));
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    EXPECT_TRUE(result.out.startsWith("Dry run: nothing was written.\n")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("Sources: 3 photos, 0 videos (")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("Bundle:  " + destination + "/Trip\n")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("Estimated size: ")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("  originals")) << qPrintable(result.out);
}

TEST_F(ExportCommand, ExportsABundleThatVerifiesCleanly)
{
    const Outcome result = sorvane({"export", photos(), "--to", out.path(), "--name", "Trip", "--title", "Test trip",
        "--sha256", "--mode", "collage", "--layout", "scatter", "--seed", "42", "--background", "dark_gray",
        "--no-loop", "--per-screen", "1:collage:varied", "--control-scope", "mirrored"});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    const QString bundle = out.filePath("Trip");
    EXPECT_TRUE(result.out.startsWith("Bundle: " + bundle + "\n")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("3 items written.")) << qPrintable(result.out);
    EXPECT_FALSE(result.out.contains("report")) << qPrintable(result.out);
    // Not a terminal: plain progress lines, a start and a summary per phase.
    EXPECT_TRUE(result.err.contains("Hashing...\n")) << qPrintable(result.err);
    EXPECT_TRUE(result.err.contains(QRegularExpression("\nHashing +3/3 .* in [0-9.]+ m?s\n")))
        << qPrintable(result.err);
    EXPECT_FALSE(result.err.contains('\r'));

    for (const char *level : {"decode", "full"}) {
        const Outcome verified = sorvane({"verify", "--level", level, "--json", bundle});
        ASSERT_EQ(verified.status, 0) << qPrintable(verified.err);
        const QJsonObject json = QJsonDocument::fromJson(verified.out.toUtf8()).object();
        EXPECT_TRUE(json["reports"].toArray().isEmpty()) << level << qPrintable(verified.out);
        EXPECT_EQ(json["integrity"].toObject()["playableItemCount"].toInteger(), 3);
    }

    const QJsonObject manifest = readJson(bundle + "/bundle.json");
    EXPECT_EQ(manifest["title"].toString(), "Test trip");
    const QJsonObject playback = manifest["playback"].toObject();
    EXPECT_EQ(playback["mode"].toString(), "collage");
    EXPECT_EQ(playback["collage_layout"].toString(), "scatter");
    EXPECT_EQ(playback["shuffle_seed"].toInteger(), 42);
    EXPECT_EQ(playback["background"].toString(), "dark_gray");
    EXPECT_EQ(playback["loop"], QJsonValue(false));
    const QJsonObject display = manifest["display"].toObject();
    EXPECT_EQ(display["preferred_control_scope"].toString(), "mirrored");
    const QJsonArray perScreen = display["preferred_per_screen"].toArray();
    ASSERT_EQ(perScreen.size(), 1);
    EXPECT_EQ(perScreen[0].toObject()["screen_ordinal"].toInteger(), 1);
    EXPECT_EQ(perScreen[0].toObject()["preferred_collage_layout"].toString(), "varied");
    EXPECT_EQ(manifest["created_by"].toObject()["app"].toString(), "sorvane");
}

TEST_F(ExportCommand, ASecondExportGetsANewNameUnlessItReplaces)
{
    const QStringList arguments {"export", photos(), "--to", out.path(), "--name", "Trip"};
    ASSERT_EQ(sorvane(arguments).status, 0);
    const Outcome second = sorvane(arguments);
    ASSERT_EQ(second.status, 0) << qPrintable(second.err);
    EXPECT_TRUE(second.out.startsWith("Bundle: " + out.filePath("Trip 2") + "\n")) << qPrintable(second.out);
    EXPECT_TRUE(QFileInfo::exists(out.filePath("Trip 2/bundle.json")));

    const Outcome replaced = sorvane(arguments + QStringList {"--replace"});
    ASSERT_EQ(replaced.status, 0) << qPrintable(replaced.err);
    EXPECT_TRUE(replaced.out.startsWith("Bundle: " + out.filePath("Trip") + " (replaced the existing bundle)\n"))
        << qPrintable(replaced.out);
    EXPECT_FALSE(QFileInfo::exists(out.filePath("Trip 3")));
    EXPECT_TRUE(QFileInfo::exists(out.filePath("Trip/bundle.json")));
}

TEST_F(ExportCommand, QuietPrintsOnlyTheBundlePath)
{
    const Outcome result = sorvane({"export", photos(), "--to", out.path(), "--quiet"});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    EXPECT_EQ(result.out, out.filePath("sorvane.bundle") + "\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(ExportCommand, ReportsFollowTheSummary)
{
    const QString sources = out.filePath("sources");
    ASSERT_EQ(run("cp", {"-r", photos(), sources}).status, 0);
    QFile broken(sources + "/broken.jpg");
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("this is not a JPEG");
    broken.close();
    ASSERT_TRUE(QFile::copy(photos() + "/photo-1.jpg", sources + "/again.jpg"));

    const Outcome result = sorvane({"export", sources, "--to", out.filePath("dest")});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    EXPECT_TRUE(result.out.contains("3 items written.")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("\n2 reports:\n  sourceUndecodable (1)\n    broken.jpg "))
        << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("  duplicateSourceMerged (1)\n")) << qPrintable(result.out);
}

TEST_F(ExportCommand, TerminationCancelsAndLeavesNothingBehind)
{
    const QString sources = manyPhotos();
    QProcess process;
    QByteArray err = startExportUntilWriting(process, sources);
    ASSERT_TRUE(err.contains("Writing derivatives...")) << err.constData();
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(60000));
    err += process.readAllStandardError();
    if (process.exitCode() == 0)
        GTEST_SKIP() << "the export finished before the signal arrived";

    EXPECT_EQ(process.exitCode(), 130) << err.constData();
    EXPECT_TRUE(err.endsWith("Cancelled.\n")) << err.constData();
    EXPECT_TRUE(process.readAllStandardOutput().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(out.filePath("dest/Many")));
    const QDir staging(out.filePath("dest/.bundle-staging"));
    EXPECT_TRUE(!staging.exists() || staging.isEmpty()) << qPrintable(staging.entryList().join(' '));
}

TEST_F(ExportCommand, AKillMidwayNeverLeavesAnythingUnderTheFinalName)
{
    const QString sources = manyPhotos();
    QProcess process;
    QByteArray err = startExportUntilWriting(process, sources);
    ASSERT_TRUE(err.contains("Writing derivatives...")) << err.constData();
    process.kill();
    ASSERT_TRUE(process.waitForFinished(60000));
    if (process.exitStatus() == QProcess::NormalExit)
        GTEST_SKIP() << "the export finished before it could be killed";
    EXPECT_FALSE(QFileInfo::exists(out.filePath("dest/Many")));

    // What the killed run left in its hidden staging folder does not stop the next one.
    const Outcome again = sorvane({"export", sources, "--to", out.filePath("dest"), "--name", "Many", "--quiet"});
    EXPECT_EQ(again.status, 0) << qPrintable(again.err);
    EXPECT_EQ(again.out.trimmed(), out.filePath("dest/Many"));
}

TEST_F(ExportCommand, WriterErrorsExitOneWithTheirCodeAndMessage)
{
    QDir().mkpath(out.filePath("payload/Slidora"));
    const Outcome result = sorvane({"export", photos(), "--to", out.filePath("dest"), "--with-player",
        out.filePath("payload"), "--player-reader-version", "0"});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.err.contains("sorvane export: playerTooOldForBundle: The bundled player reads format version 0, "
                                    "but this bundle requires 1."))
        << qPrintable(result.err);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(out.filePath("dest")));
    // The writer's own log line would only repeat the error, so it shows only when asked for.
    EXPECT_FALSE(result.err.contains("Export failed:")) << qPrintable(result.err);
    const Outcome verbose = sorvane({"export", photos(), "--to", out.filePath("dest"), "--with-player",
        out.filePath("payload"), "--player-reader-version", "0", "--verbose"});
    EXPECT_EQ(verbose.status, 1);
    EXPECT_TRUE(verbose.err.contains("Export failed: The bundled player reads")) << qPrintable(verbose.err);
}

} // namespace
} // namespace sorvane
