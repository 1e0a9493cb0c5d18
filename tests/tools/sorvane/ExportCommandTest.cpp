#include "CliTestSupport.h"
#include "support/SampleFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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

// Three different real JPEG photos, and sixty large ones (copies made unique by bytes after
// the image data, which decoders ignore) that take a moment to encode.
test::SampleFolder &samples()
{
    static test::SampleFolder folder({
        {"photos",
            "mkdir photos && for source in testsrc smptebars rgbtestsrc; do "
            "ffmpeg -v error -f lavfi -i $source=s=320x240 -frames:v 1 photos/$source.jpg; done"},
        {"many",
            "mkdir many && ffmpeg -v error -f lavfi -i testsrc2=s=3000x2000 -frames:v 1 big.jpg && "
            "for i in $(seq 60); do (cat big.jpg; printf %${i}s) >many/copy-$i.jpg; done"},
    });
    return folder;
}

class ExportCommand : public testing::Test {
protected:
    static QString photos() { return samples().path("photos"); }

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

TEST_F(ExportCommand, ExportsWithPlainProgressAndReports)
{
    // The photos, a copy of one and a file that only claims to be a photo.
    const QString sources = out.filePath("sources");
    ASSERT_EQ(run("cp", {"-r", photos(), sources}).status, 0);
    ASSERT_TRUE(QFile::copy(photos() + "/testsrc.jpg", sources + "/again.jpg"));
    ASSERT_TRUE(test::writeAll(sources + "/broken.jpg", "this is not a JPEG"));
    const Outcome result = sorvane({"export", sources, "--to", out.path(), "--name", "Trip"});
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

    // Quiet prints only the path, here of the bundle it replaced.
    const Outcome replaced = sorvane({"export", sources, "--to", out.path(), "--name", "Trip", "--replace", "--quiet"});
    ASSERT_EQ(replaced.status, 0) << qPrintable(replaced.err);
    EXPECT_EQ(replaced.out, bundle + "\n");
    EXPECT_EQ(replaced.err, "");
    EXPECT_FALSE(QFileInfo::exists(out.filePath("Trip 2")));
}

TEST_F(ExportCommand, TerminationCancelsAndLeavesNothingBehind)
{
    const QString sources = samples().path("many");
    QProcess process;
    process.start(test::sorvaneProgram(), {"export", sources, "--to", out.filePath("dest"), "--name", "Many"});
    process.setReadChannel(QProcess::StandardError);
    QByteArray err;
    while (!err.contains("Writing derivatives...") && process.waitForReadyRead(60000))
        err += process.readAllStandardError();
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
