#pragma once

#include "bundle/BundleWriteResult.h"
#include "bundle/BundleWriter.h"

#include <QString>

#include <functional>
#include <map>
#include <vector>

namespace sorvane::cli {

// Files of each tier in the bundle at `bundlePath`, counted from its manifest;
// empty when the manifest cannot be read.
std::map<QString, qint64> tierFileCounts(const QString &bundlePath);

// What a successful export wrote: where, how many items, files and bytes per tier, then the reports.
QString exportSummary(const BundleWriteResult &result, const std::map<QString, qint64> &filesPerTier);

// Reports grouped by code, each group capped at `perGroup` messages; empty when there are none.
QString reportList(const std::vector<BundleWriteReport> &reports, int perGroup = 20);

// Where an export of `request` would put its bundle: the path, and whether it would replace one.
struct PlannedBundle {
    QString path;
    bool replaces = false;
};
PlannedBundle plannedBundle(const BundleWriteRequest &request, const std::function<bool(const QString &)> &exists);

// What --dry-run prints.
QString dryRunText(const BundleSourceScan &scan, const PlannedBundle &bundle);

} // namespace sorvane::cli
