#pragma once

#include "bundle/BundleAssetProbing.h"

namespace sorvane {

// Decides decodability with libvips: the file must be an image, complete, and
// make a small thumbnail. Never trusts the file's extension.
class VipsAssetProbe final : public BundleAssetProbing {
public:
    // Larger images are treated as undecodable so that a hostile file cannot exhaust memory.
    static constexpr qint64 maxPixels = qint64(1) << 28;

    std::optional<BundleProbeResult> probe(const QString &filePath) const override;
};

} // namespace sorvane
