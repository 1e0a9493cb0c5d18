#pragma once

#include "bundle/BundleReport.h"

#include <QString>
#include <vector>

namespace sorvane {

struct BundleMissingItem {
    QString itemId;
    BundleReportCode reason = BundleReportCode::itemAssetMissing;
    QString detail;

    bool operator==(const BundleMissingItem &) const = default;
};

// Counters of an open, shared between the open result and the opened bundle
// and updated during playback as files fail on screen.
struct BundleIntegrity {
    qint64 manifestItemCount = 0;
    qint64 playableItemCount = 0;
    std::vector<BundleMissingItem> missingItems;
    qint64 expectedAssetBytes = 0;
    qint64 resolvedAssetBytes = 0;
    qint64 expectedOriginalCount = 0;
    qint64 resolvedOriginalCount = 0;
    qint64 unsupportedMediaCount = 0;
};

} // namespace sorvane
