#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

namespace sorvane {

// What a successful probe learned about a file.
struct BundleProbeResult {
    qint64 width = 0;
    qint64 height = 0;
    qint64 bytes = 0;
};

// Decides whether an image file really decodes. The reader calls it from
// several threads at once, so implementations must be thread-safe.
class BundleAssetProbing {
public:
    virtual ~BundleAssetProbing() = default;
    // The image's pixel size and the file's byte count, or nothing when it does not decode.
    virtual std::optional<BundleProbeResult> probe(const QString &filePath) const = 0;
};

} // namespace sorvane
