#pragma once

#include <QString>
#include <optional>

namespace sorvane {

enum class BundleErrorCode {
    notABundle,
    manifestUnreadable,
    manifestMalformed,
    unsupportedFutureVersion,
    incompleteBundle,
    noPlayableMedia,
};

QString toString(BundleErrorCode code);

// The one fatal outcome of opening a bundle.
struct BundleError {
    BundleErrorCode code = BundleErrorCode::notABundle;
    QString message;
    std::optional<QString> path;
    std::optional<QString> jsonPath;
    std::optional<QString> cause;
    std::optional<qint64> requiredReaderVersion;
    std::optional<qint64> supportedReaderVersion;

    bool operator==(const BundleError &) const = default;
};

} // namespace sorvane
