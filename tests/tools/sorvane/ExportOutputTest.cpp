#include "ExportSummary.h"
#include "ProgressDisplay.h"
#include "TextFormat.h"

#include <gtest/gtest.h>

#include <set>

namespace sorvane::cli {
namespace {

using namespace std::chrono_literals;

// Compared as standard strings so that a failure prints readable text.
std::string str(const QString &text)
{
    return text.toStdString();
}
std::string str(const QStringList &lines)
{
    return lines.join('\n').toStdString();
}

// A display whose clock the test moves by hand and whose output it collects.
struct DisplayRig {
    explicit DisplayRig(bool terminal, int columns = 80)
        : display(terminal,
            ProgressDisplay::Output {[this](const QString &text) { writes << text; }, [this] { return this->columns; },
                [this] { return now; }}),
          columns(columns)
    {
    }
    void advance(std::chrono::milliseconds step) { now += step; }
    QString all() const { return writes.join(QString()); }

    ProgressDisplay display;
    int columns;
    ProgressDisplay::Clock::time_point now {};
    QStringList writes;
};

BundleWriteProgress progress(BundleWritePhase phase, qint64 completed, qint64 total, const char *item = nullptr,
    qint64 completedBytes = 0, qint64 totalBytes = 0)
{
    BundleWriteProgress p;
    p.phase = phase;
    p.completed = completed;
    p.total = total;
    if (item)
        p.currentItem = QString::fromUtf8(item);
    p.completedBytes = completedBytes;
    p.totalBytes = totalBytes;
    return p;
}

TEST(ProgressDisplay, TerminalRedrawsInPlaceAndLeavesOneSummaryLinePerPhase)
{
    DisplayRig rig(true);
    rig.display.note("before any progress");
    rig.display.update(progress(BundleWritePhase::hashing, 0, 3, "/p/a.jpg", 0, 1'200'000));
    rig.advance(40ms); // within a tenth of a second of the last redraw: not shown
    rig.display.update(progress(BundleWritePhase::hashing, 1, 3, "/p/b.jpg", 400'000, 1'200'000));
    ASSERT_EQ(rig.writes.size(), 2) << qPrintable(rig.all());
    EXPECT_EQ(str(rig.writes[0]), "before any progress\n");
    EXPECT_TRUE(rig.writes[1].startsWith('\r') && rig.writes[1].endsWith("\033[K")) << qPrintable(rig.writes[1]);
    EXPECT_TRUE(rig.writes[1].contains("0/3") && rig.writes[1].contains("a.jpg")) << qPrintable(rig.writes[1]);
    EXPECT_FALSE(rig.writes[1].contains("/p/")) << "only the file name is shown";
    // A log line goes above the live line, which is drawn again below it, up to date.
    rig.display.note("engine: something");
    EXPECT_TRUE(rig.writes.back().startsWith("\rengine: something\033[K\n\rHashing              1/3"))
        << qPrintable(rig.writes.back());

    rig.advance(3060ms);
    rig.display.update(progress(BundleWritePhase::hashing, 3, 3, "c.jpg", 1'200'000, 1'200'000));
    rig.advance(10ms); // a new phase is drawn at once, however soon
    rig.display.update(progress(BundleWritePhase::writingDerivatives, 0, 3, "a.jpg"));
    rig.advance(500ms);
    rig.display.update(progress(BundleWritePhase::writingDerivatives, 3, 3, "c.jpg"));
    rig.advance(100ms);
    rig.display.finish(true);
    const QString shown = rig.all();
    EXPECT_TRUE(shown.contains("\rHashing              3/3  1.2 MB in 3.1 s\033[K\n")) << qPrintable(shown);
    EXPECT_TRUE(shown.endsWith("\rWriting derivatives  3/3 in 0.6 s\033[K\n")) << qPrintable(shown);
    EXPECT_EQ(shown.count('\n'), 4);
    // Once finished, late updates change nothing.
    const qsizetype writes = rig.writes.size();
    rig.display.update(progress(BundleWritePhase::finalizing, 1, 1));
    EXPECT_EQ(rig.writes.size(), writes);

    // A failure keeps the last line and adds no summary.
    DisplayRig failed(true);
    failed.display.update(progress(BundleWritePhase::hashing, 1, 4, "a.jpg"));
    failed.display.finish(false);
    EXPECT_EQ(str(failed.writes.back()), "\n");
    EXPECT_FALSE(failed.all().contains(" in "));
}

TEST(ProgressDisplay, PlainOutputIsOneLinePerEventAtACalmPace)
{
    DisplayRig rig(false);
    rig.display.update(progress(BundleWritePhase::scanning, 0, 0));
    rig.advance(300ms);
    rig.display.update(progress(BundleWritePhase::scanning, 40, 0));
    rig.display.update(progress(BundleWritePhase::hashing, 0, 40, "a.jpg", 0, 4'000'000));
    rig.display.note("engine: something");
    for (int i = 1; i <= 30; ++i) {
        rig.advance(100ms); // 3 s in all: one progress line, after 2 s
        rig.display.update(progress(BundleWritePhase::hashing, i, 40, "f.jpg", i * 100'000, 4'000'000));
    }
    rig.advance(900ms); // still short of the next 2 s
    rig.display.update(progress(BundleWritePhase::hashing, 40, 40, "z.jpg", 4'000'000, 4'000'000));
    rig.display.finish(true);

    const QStringList lines = rig.all().split('\n', Qt::SkipEmptyParts);
    // At 2 s: 20 of 40 done, 2 MB of 4 MB at 1 MB/s, so 2 s to go.
    EXPECT_EQ(str(lines),
        str(QStringList {"Scanning...", "Scanning             40 in 0.3 s", "Hashing...", "engine: something",
            "Hashing              20/40   50%  1.0 MB/s  0:02 left  f.jpg",
            "Hashing              40/40  4.0 MB in 3.9 s"}));
    EXPECT_FALSE(rig.all().contains('\r'));
    EXPECT_FALSE(rig.all().contains('\033'));
}

TEST(ProgressDisplay, LiveLineFitsTheTerminalKeepingWhatMattersMost)
{
    const BundleWriteProgress long_ = progress(BundleWritePhase::writingDerivatives, 120, 240,
        "/photos/2024/a-very-long-file-name-from-a-camera-that-likes-long-names-0001.jpeg", 50'000'000, 100'000'000);
    for (const int columns : {10, 40, 60, 80, 200}) {
        const QString line = ProgressDisplay::liveLine(long_, 2.0, columns);
        EXPECT_LE(line.size(), columns - 1) << columns << ": " << qPrintable(line);
        EXPECT_TRUE(line.startsWith(QStringLiteral("Writing derivatives").left(columns - 1))) << qPrintable(line);
    }
    const BundleWriteProgress items = progress(BundleWritePhase::writingDerivatives, 30, 90);
    const struct {
        const BundleWriteProgress &progress;
        double elapsed;
        int columns;
        std::vector<const char *> shown, left;
    } table[] = {
        {long_, 2.0, 200, {"120/240", "[", " 50%", "25 MB/s", "0:02 left", "-0001.jpeg"}, {}},
        // The name is shortened in the middle, keeping its end.
        {long_, 2.0, 80, {"\u2026", " 50%", "0:02 left"}, {}},
        // Short of room, the time left stays longer than the rate.
        {long_, 2.0, 60, {"0:02 left"}, {"MB/s"}},
        // The rate waits for the first second; without bytes it counts items.
        {items, 0.5, 120, {}, {"/s"}},
        {items, 2.0, 120, {"15 items/s", "0:04 left"}, {}},
    };
    for (const auto &row : table) {
        const QString line = ProgressDisplay::liveLine(row.progress, row.elapsed, row.columns);
        for (const char *part : row.shown)
            EXPECT_TRUE(line.contains(QString::fromUtf8(part))) << part << " in " << qPrintable(line);
        for (const char *part : row.left)
            EXPECT_FALSE(line.contains(QString::fromUtf8(part))) << part << " in " << qPrintable(line);
    }

    // The bar fills with the items done and keeps its width whatever the file name.
    for (const auto &[completed, filled] : {std::pair {0, 0}, {1, 1}, {5, 9}, {10, 18}}) {
        const QString line = ProgressDisplay::liveLine(progress(BundleWritePhase::hashing, completed, 10), 0.0, 101);
        const QString inside = line.mid(line.indexOf('[') + 1, 18);
        EXPECT_TRUE(line.contains("[" + inside + "]")) << qPrintable(line);
        EXPECT_EQ(inside.count('='), filled) << qPrintable(line);
    }
}

TEST(TextFormat, DurationsReadNaturally)
{
    const std::pair<double, const char *> cases[] = {
        {0, "0 s"},
        {0.042, "42 ms"},
        {0.42, "0.4 s"},
        {3.14, "3.1 s"},
        {42.4, "42 s"},
        {125, "2 min 5 s"},
        {4320, "1 h 12 min"},
    };
    for (const auto &[seconds, expected] : cases)
        EXPECT_EQ(str(formatDuration(seconds)), expected) << seconds;
}

BundleWriteReport report(BundleWriteReportCode code, const QString &message)
{
    return {code, message, std::nullopt};
}

TEST(ExportSummary, ListsBundleItemsTiersAndTotals)
{
    BundleWriteResult result;
    result.bundlePath = "/out/Trip";
    result.replacedExistingBundle = true;
    result.itemsWritten = 3;
    result.bytesPerTier = {{"full", 450'000}, {"tile", 120'000}};
    result.originalsWritten = 3;
    result.originalBytesWritten = 2'000'000;
    result.playerBytesWritten = 85'000'000;
    EXPECT_EQ(str(exportSummary(result, {{"tile", 3}, {"full", 3}})),
        "Bundle: /out/Trip (replaced the existing bundle)\n"
        "3 items written.\n"
        "  tile       3 files  120 KB\n"
        "  full       3 files  450 KB\n"
        "  originals  3 files  2.0 MB\n"
        "  player               85 MB\n"
        "  total                88 MB\n");

    // Originals counted as a tier are listed once.
    result.bundlePath = "/out/b";
    result.replacedExistingBundle = false;
    result.itemsWritten = 2;
    result.bytesPerTier = {{"original", 5'000'000}, {"video", 9'000'000}, {"full", 1'000'000}};
    result.originalsWritten = 2;
    result.originalBytesWritten = 5'000'000;
    result.playerBytesWritten = 0;
    EXPECT_EQ(str(exportSummary(result, {{"original", 2}, {"video", 1}, {"full", 2}})),
        "Bundle: /out/b\n"
        "2 items written.\n"
        "  full      2 files  1.0 MB\n"
        "  video     1 file   9.0 MB\n"
        "  original  2 files  5.0 MB\n"
        "  total               15 MB\n");

    // One tier needs no total.
    result.itemsWritten = 1;
    result.bytesPerTier = {{"full", 999}};
    result.originalsWritten = 0;
    result.originalBytesWritten = 0;
    EXPECT_EQ(str(exportSummary(result, {})), "Bundle: /out/b\n1 item written.\n  full  999 bytes\n");
}

TEST(ExportSummary, ReportsAreGroupedByCodeAndCapped)
{
    std::vector<BundleWriteReport> reports;
    for (int i = 0; i < 23; ++i)
        reports.push_back(report(BundleWriteReportCode::duplicateSourceMerged, QStringLiteral("dup %1").arg(i)));
    reports.insert(reports.begin() + 5, report(BundleWriteReportCode::sourceUndecodable, "bad.jpg is bad"));
    const QString text = reportList(reports, 20);
    QStringList expected {
        "24 reports:", "  sourceUndecodable (1)", "    bad.jpg is bad", "  duplicateSourceMerged (23)"};
    for (int i = 0; i < 20; ++i)
        expected << QStringLiteral("    dup %1").arg(i);
    expected << "    ... and 3 more";
    EXPECT_EQ(str(text.split('\n', Qt::SkipEmptyParts)), str(expected));
    EXPECT_EQ(str(reportList({})), "");
    EXPECT_EQ(str(reportList({report(BundleWriteReportCode::hashCollisionExtended, "x")})),
        "1 report:\n  hashCollisionExtended (1)\n    x\n");
}

TEST(ExportSummary, DryRunPlansTheWritersNameAndShowsTheEstimate)
{
    BundleWriteRequest request;
    request.destinationDirectory = "/out";
    const std::set<QString> taken {"/out/Trip", "/out/Trip 2"};
    const auto exists = [&taken](const QString &path) { return taken.count(path) > 0; };
    EXPECT_EQ(str(plannedBundle(request, exists).path), "/out/sorvane.bundle");
    request.bundleFolderName = "Trip";
    const PlannedBundle planned = plannedBundle(request, exists);
    EXPECT_EQ(str(planned.path), "/out/Trip 3");
    EXPECT_FALSE(planned.replaces);
    request.replaceExisting = true;
    EXPECT_EQ(str(plannedBundle(request, exists).path), "/out/Trip");
    EXPECT_TRUE(plannedBundle(request, exists).replaces);

    BundleSourceScan scan;
    scan.sources = {{"/a.jpg", 2'000'000, false}, {"/b.jpg", 3'000'000, false}, {"/c.mov", 40'000'000, true}};
    scan.estimate.derivativeBytes = 1'500'000;
    scan.estimate.videoBytes = 40'000'000;
    EXPECT_EQ(str(dryRunText(scan, planned)),
        "Dry run: nothing was written.\n"
        "Sources: 2 photos, 1 video (45 MB)\n"
        "Bundle:  /out/Trip 3\n"
        "Estimated size: 42 MB\n"
        "  photos  1.5 MB\n"
        "  videos   40 MB\n");
}

} // namespace
} // namespace sorvane::cli
