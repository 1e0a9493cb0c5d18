#pragma once

#include <QString>
#include <optional>

namespace sorvane {

enum class BundleReportCode {
    itemAssetMissing,
    itemAssetSizeMismatch,
    itemAssetUndecodable,
    unsupportedMediaSkipped,
    unknownEnumValueDefaulted,
    originalsMissing,
    unknownFieldsIgnored,
    brandingLogoAssetMissing,
};

QString toString(BundleReportCode code);

// A non-fatal finding of the reader or of playback.
struct BundleReport {
    BundleReportCode code = BundleReportCode::itemAssetMissing;
    QString message;
    std::optional<QString> itemId;
    std::optional<QString> assetPath;
    std::optional<QString> fieldPath;
    std::optional<QString> unrecognizedValue;
    std::optional<QString> defaultUsed;

    bool operator==(const BundleReport &) const = default;
};

} // namespace sorvane
