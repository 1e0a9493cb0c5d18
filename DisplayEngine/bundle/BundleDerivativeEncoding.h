#pragma once

#include "bundle/BundleRasterImage.h"

#include <QString>
#include <optional>
#include <vector>

namespace sorvane {

// One tier to make: its name, the longest edge allowed, and the absolute folder
// the file goes into. Images are never enlarged to reach the edge.
struct BundleTierTarget {
    QString name;
    int longEdge = 0;
    QString directory;
};

struct BundleDerivativeFile {
    QString tier;
    QString path; // absolute; "<baseName>.jpg", or ".png" when the source has alpha
    qint64 bytes = 0;
    int width = 0;
    int height = 0;
};

// What one encoding produced: a file per tier, or the reason it failed.
struct BundleDerivativeResult {
    std::vector<BundleDerivativeFile> files;
    std::optional<QString> error;
    // The source decoded but a file could not be written (a full or failing disk):
    // the export's failure, not the photo's.
    bool writeFailed = false;

    bool ok() const { return !error.has_value(); }
};

// What the writer needs to know about a still or animated source before encoding it.
struct BundleImageInfo {
    int width = 0;
    int height = 0;
    int frames = 1; // more than one: an animation
    bool hasAlpha = false;
};

// Makes the resized, upright, metadata-free derivatives of photos. Called from
// several threads at once, so implementations must be thread-safe.
class BundleDerivativeEncoding {
public:
    virtual ~BundleDerivativeEncoding() = default;

    // The source's header: nothing when the file is not an image this encoder can read.
    virtual std::optional<BundleImageInfo> inspect(const QString &source) const = 0;
    // Decodes `source` once (its first frame) and writes one file per tier, orientation
    // applied, in sRGB: JPEG at quality 85, or PNG when the source has alpha.
    virtual BundleDerivativeResult encode(
        const QString &source, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const = 0;
    // The same from decoded pixels (a video's poster frame); always JPEG.
    virtual BundleDerivativeResult encode(
        const BundleRasterImage &image, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const = 0;
    // Writes `source` as a PNG at `destination` (a logo); the error's description on failure.
    virtual std::optional<QString> writePng(const QString &source, const QString &destination) const = 0;
};

} // namespace sorvane
