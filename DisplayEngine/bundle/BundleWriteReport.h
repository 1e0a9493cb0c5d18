#pragma once

#include <QString>
#include <optional>

namespace sorvane {

enum class BundleWriteReportCode {
    sourceUndecodable,
    videoPosterUnavailable,
    videoPosterFallbackUsed,
    animatedAssetOmitted,
    duplicateSourceMerged,
    hashCollisionExtended,
};

QString toString(BundleWriteReportCode code);

// Something the export skipped, merged or downgraded; the write went on.
struct BundleWriteReport {
    BundleWriteReportCode code = BundleWriteReportCode::sourceUndecodable;
    QString message;
    std::optional<QString> sourcePath;

    bool operator==(const BundleWriteReport &) const = default;
};

} // namespace sorvane
