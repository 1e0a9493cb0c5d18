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
            EXPECT_TRUE(test::writeAll(sources + QStringLiteral("/copy-%1.jpg").arg(copy),
                test::readAll(samples[copy % samples.size()].absoluteFilePath())
                    + QByteArray(1 + copy / samples.size(), 'x')));
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

TEST_F(ExportCommand, UsageErrorsExitTwoAndDryRunsWriteNothing)
{
    const CommandCase cases[] = {
        {{"export"}, 2, "sorvane export: no source given"},
        {{"export", out.filePath("nothing-here"), "--to", out.path()}, 2, "no such file or folder"},
        {{"export", photos(), "--to", out.path(), "--colour"}, 2, "Run 'sorvane export --help' for usage."},
        {{"export", "--help"}, 0, "130  the export was cancelled"},
        {{"--help"}, 0, "export    Make a bundle"},
        {{"export", out.filePath("empty"), "--to", out.filePath("dest"), "--dry-run"}, 1,
            "sorvane export: noSourceMedia: No supported media found in the sources."},
    };
    QDir().mkpath(out.filePath("empty"));
    expectCommandOutcomes(cases);

    const QString destination = out.filePath("not/made/yet");
    const Outcome result
        = sorvane({"export", photos(), "--to", destination, "--name", "Trip", "--originals", "--dry-run"});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    EXPECT_TRUE(result.out.startsWith("Dry run: nothing was written.\nSources: 3 photos, 0 videos ("))
        << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("Bundle:  " + destination + "/Trip\n")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("  originals")) << qPrintable(result.out);
    // Nothing was made by any of them.
    EXPECT_EQ(QDir(out.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList {"empty"});
}

TEST_F(ExportCommand, ExportsWithTheChosenSettingsPlainProgressAndReports)
{
    // The photos, a copy of one and a file that only claims to be a photo.
    const QString sources = out.filePath("sources");
    ASSERT_EQ(run("cp", {"-r", photos(), sources}).status, 0);
    ASSERT_TRUE(QFile::copy(photos() + "/photo-1.jpg", sources + "/again.jpg"));
    ASSERT_TRUE(test::writeAll(sources + "/broken.jpg", "this is not a JPEG"));
    const Outcome result = sorvane({"export", sources, "--to", out.path(), "--name", "Trip", "--title", "Test trip",
        "--mode", "collage", "--seed", "42", "--per-screen", "1:collage:varied"});
    ASSERT_EQ(result.status, 0) << qPrintable(result.err);
    const QString bundle = out.filePath("Trip");
    EXPECT_TRUE(result.out.startsWith("Bundle: " + bundle + "\n3 items written.")) << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("\n2 reports:\n  sourceUndecodable (1)\n    broken.jpg "))
        << qPrintable(result.out);
    EXPECT_TRUE(result.out.contains("  duplicateSourceMerged (1)\n")) << qPrintable(result.out);
    // Not a terminal: plain progress lines, a start and a summary per phase.
    EXPECT_TRUE(result.err.contains(QRegularExpression("Hashing...\nHashing +5/5 .* in [0-9.]+ m?s\n")))
        << qPrintable(result.err);
    EXPECT_FALSE(result.err.contains('\r'));

    const QJsonObject manifest = QJsonDocument::fromJson(test::readAll(bundle + "/bundle.json")).object();
    EXPECT_EQ(manifest["title"].toString(), "Test trip");
    EXPECT_EQ(manifest["created_by"].toObject()["app"].toString(), "sorvane");
    const QJsonObject playback = manifest["playback"].toObject();
    EXPECT_EQ(playback["mode"].toString(), "collage");
    EXPECT_EQ(playback["shuffle_seed"].toInteger(), 42);
    const QJsonArray perScreen = manifest["display"].toObject()["preferred_per_screen"].toArray();
    EXPECT_EQ(perScreen,
        (QJsonArray {QJsonObject {
            {"screen_ordinal", 1}, {"preferred_mode", "collage"}, {"preferred_collage_layout", "varied"}}}));

    // Quiet prints only the path, here of the bundle it replaced.
    const Outcome replaced = sorvane({"export", sources, "--to", out.path(), "--name", "Trip", "--replace", "--quiet"});
    ASSERT_EQ(replaced.status, 0) << qPrintable(replaced.err);
    EXPECT_EQ(replaced.out, bundle + "\n");
    EXPECT_EQ(replaced.err, "");
    EXPECT_FALSE(QFileInfo::exists(out.filePath("Trip 2")));
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
