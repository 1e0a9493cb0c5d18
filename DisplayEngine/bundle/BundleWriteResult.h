#pragma once

#include "bundle/BundleWriteErrorCode.h"
#include "bundle/BundleWriteReport.h"

#include <QString>
#include <optional>
#include <vector>

namespace sorvane {

// The one outcome of an export: the finished folder, or an error code and message.
struct BundleWriteResult {
    std::optional<QString> bundlePath; // absolute path of the finished bundle folder
    bool replacedExistingBundle = false;
    std::optional<BundleWriteErrorCode> errorCode;
    std::optional<QString> errorMessage;
    std::vector<BundleWriteReport> reports;
    qint64 itemsWritten = 0;
    qint64 assetFilesWritten = 0;
    qint64 assetBytesWritten = 0;
    qint64 originalsWritten = 0;
    qint64 originalBytesWritten = 0;
    qint64 playerBytesWritten = 0;
    qint64 videoPosterUnavailableCount = 0;
    qint64 videoPosterFallbackCount = 0;
    qint64 animatedDowngradedCount = 0;
    qint64 undecodableSourceCount = 0;
    qint64 duplicateSourceCount = 0;
    // Bytes written per tier name, for summaries.
    std::vector<std::pair<QString, qint64>> bytesPerTier;

    bool ok() const { return !errorCode.has_value(); }
};

} // namespace sorvane
