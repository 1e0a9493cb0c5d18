#include "ExportSummary.h"

#include "TextFormat.h"

#include "bundle/BundleFormat.h"
#include "bundle/BundleManifest.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace sorvane::cli {

namespace {

// The folder name a write uses when the request names none.
const QString defaultBundleFolderName = QStringLiteral("sorvane.bundle");
// Folder names tried before a write gives up: N, "N 2" ... "N 999".
constexpr int lastFolderCounter = 999;

const BundleWriteReportCode reportCodes[] = {
    BundleWriteReportCode::sourceUndecodable,
    BundleWriteReportCode::videoPosterUnavailable,
    BundleWriteReportCode::videoPosterFallbackUsed,
    BundleWriteReportCode::animatedAssetOmitted,
    BundleWriteReportCode::duplicateSourceMerged,
    BundleWriteReportCode::hashCollisionExtended,
};

QString counted(qint64 count, const char *singular, const char *plural)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1StringView(count == 1 ? singular : plural));
}

struct Row {
    QString name;
    std::optional<qint64> files;
    qint64 bytes = 0;
};

QString table(const std::vector<Row> &rows)
{
    qsizetype nameWidth = 0;
    qsizetype countWidth = 0;
    qsizetype bytesWidth = 0;
    for (const Row &row : rows) {
        nameWidth = std::max(nameWidth, row.name.size());
        if (row.files)
            countWidth = std::max(countWidth, QString::number(*row.files).size());
        bytesWidth = std::max(bytesWidth, formatBytes(row.bytes).size());
    }
    QString text;
    for (const Row &row : rows) {
        text += QStringLiteral("  ") + row.name.leftJustified(nameWidth);
        if (countWidth > 0) {
            // Numbers right-aligned, the word after them left-aligned.
            const QString files = row.files
                ? QString::number(*row.files).rightJustified(countWidth) + (*row.files == 1 ? " file " : " files")
                : QString();
            text += QStringLiteral("  ") + files.leftJustified(countWidth + 6);
        }
        text += QStringLiteral("  ") + formatBytes(row.bytes).rightJustified(bytesWidth) + QLatin1Char('\n');
    }
    return text;
}

} // namespace

std::map<QString, qint64> tierFileCounts(const QString &bundlePath)
{
    std::map<QString, qint64> counts;
    QFile file(QDir(bundlePath).filePath(BundleFormat::manifestFileName));
    if (file.size() > BundleFormat::maxManifestBytes || !file.open(QIODevice::ReadOnly))
        return counts;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    const BundleManifest manifest = BundleManifest::fromJson(document.object());
    for (const BundleItem &item : manifest.items.value_or(std::vector<BundleItem> {})) {
        for (const auto &asset : item.assets)
            ++counts[asset.first];
    }
    return counts;
}

QString exportSummary(const BundleWriteResult &result, const std::map<QString, qint64> &filesPerTier)
{
    QString text = QStringLiteral("Bundle: %1").arg(result.bundlePath.value_or(QString()));
    if (result.replacedExistingBundle)
        text += QStringLiteral(" (replaced the existing bundle)");
    text += QStringLiteral("\n%1 written.\n").arg(counted(result.itemsWritten, "item", "items"));

    auto filesOf = [&](const QString &tier) -> std::optional<qint64> {
        const auto found = filesPerTier.find(tier);
        return found == filesPerTier.end() ? std::nullopt : std::optional<qint64>(found->second);
    };
    std::vector<Row> rows;
    bool originalsListed = false;
    // Small to large, as the format lists its tiers; names it does not know go last.
    auto tiers = result.bytesPerTier;
    const auto rank = [](const QString &tier) {
        const qsizetype index = BundleFormat::tierNames.indexOf(tier);
        return index < 0 ? BundleFormat::tierNames.size() : index;
    };
    std::stable_sort(
        tiers.begin(), tiers.end(), [&](const auto &a, const auto &b) { return rank(a.first) < rank(b.first); });
    for (const auto &[tier, bytes] : tiers) {
        rows.push_back({tier, filesOf(tier), bytes});
        originalsListed = originalsListed || tier == BundleFormat::tierOriginal;
    }
    if (rows.empty() && result.assetFilesWritten > 0)
        rows.push_back({QStringLiteral("media"), result.assetFilesWritten, result.assetBytesWritten});
    if (!originalsListed && (result.originalsWritten > 0 || result.originalBytesWritten > 0))
        rows.push_back({QStringLiteral("originals"), result.originalsWritten, result.originalBytesWritten});
    if (result.playerBytesWritten > 0)
        rows.push_back({QStringLiteral("player"), std::nullopt, result.playerBytesWritten});
    if (rows.size() > 1) {
        qint64 total = 0;
        for (const Row &row : rows)
            total += row.bytes;
        rows.push_back({QStringLiteral("total"), std::nullopt, total});
    }
    text += table(rows);
    const QString reports = reportList(result.reports);
    if (!reports.isEmpty())
        text += QLatin1Char('\n') + reports;
    return text;
}

QString reportList(const std::vector<BundleWriteReport> &reports, int perGroup)
{
    if (reports.empty())
        return {};
    QString text = counted(qint64(reports.size()), "report", "reports") + QStringLiteral(":\n");
    for (const BundleWriteReportCode code : reportCodes) {
        const auto inGroup = [code](const BundleWriteReport &report) { return report.code == code; };
        const qint64 count = std::count_if(reports.begin(), reports.end(), inGroup);
        if (count == 0)
            continue;
        text += QStringLiteral("  %1 (%2)\n").arg(toString(code)).arg(count);
        int shown = 0;
        for (const BundleWriteReport &report : reports) {
            if (!inGroup(report))
                continue;
            if (shown == perGroup)
                break;
            text += QStringLiteral("    ") + report.message + QLatin1Char('\n');
            ++shown;
        }
        if (count > shown)
            text += QStringLiteral("    ... and %1 more\n").arg(count - shown);
    }
    return text;
}

PlannedBundle plannedBundle(const BundleWriteRequest &request, const std::function<bool(const QString &)> &exists)
{
    const QString name = request.bundleFolderName.isEmpty() ? defaultBundleFolderName : request.bundleFolderName;
    const QDir destination(request.destinationDirectory);
    const QString first = destination.filePath(name);
    if (!exists(first))
        return {first, false};
    if (request.replaceExisting)
        return {first, true};
    for (int counter = 2; counter <= lastFolderCounter; ++counter) {
        const QString candidate = destination.filePath(QStringLiteral("%1 %2").arg(name).arg(counter));
        if (!exists(candidate))
            return {candidate, false};
    }
    return {}; // every name is taken: the write itself will say so
}

QString dryRunText(const BundleSourceScan &scan, const PlannedBundle &bundle)
{
    qint64 photos = 0;
    qint64 videos = 0;
    qint64 sourceBytes = 0;
    for (const BundleSourceFile &source : scan.sources) {
        ++(source.isVideo ? videos : photos);
        sourceBytes += source.bytes;
    }
    QString text = QStringLiteral("Dry run: nothing was written.\n");
    text += QStringLiteral("Sources: %1, %2 (%3)\n")
                .arg(counted(photos, "photo", "photos"), counted(videos, "video", "videos"), formatBytes(sourceBytes));
    if (bundle.path.isEmpty())
        text += QStringLiteral("Bundle:  no free folder name left\n");
    else
        text += QStringLiteral("Bundle:  %1%2\n")
                    .arg(bundle.path,
                        bundle.replaces ? QStringLiteral(" (would replace the existing bundle)") : QString());

    const BundleSizeEstimate &estimate = scan.estimate;
    text += QStringLiteral("Estimated size: %1\n").arg(formatBytes(estimate.totalBytes()));
    std::vector<Row> rows {{QStringLiteral("photos"), std::nullopt, estimate.derivativeBytes}};
    if (estimate.videoBytes > 0 || videos > 0)
        rows.push_back({QStringLiteral("videos"), std::nullopt, estimate.videoBytes});
    if (estimate.includesOriginals)
        rows.push_back({QStringLiteral("originals"), std::nullopt, estimate.originalBytes});
    if (estimate.playerBytes > 0)
        rows.push_back({QStringLiteral("player"), std::nullopt, estimate.playerBytes});
    return text + table(rows);
}

} // namespace sorvane::cli
