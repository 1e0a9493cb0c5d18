#pragma once

#include "bundle/BundleDerivativeEncoding.h"

namespace sorvane {

// Makes derivatives with libvips. Each source is decoded once, shrunk on load
// where the format allows it, for all of its tiers together: the largest tier is
// made from the file, the smaller ones from that tier's pixels in memory.
//
// - inspect() reads the header only. Its width and height are upright (the
//   orientation tag applied), so they have the same shape as the derivatives.
//   Frames are counted for GIF and WebP only; the pages of a TIFF or HEIF file
//   are not an animation. Images over VipsAssetProbe::maxPixels are refused.
// - Derivatives are 8-bit sRGB without any metadata: JPEG at quality 85
//   (baseline), or PNG when the decoded image has an alpha band. libvips gives
//   every GIF an alpha band, so a GIF becomes a PNG.
// - writePng() keeps the image's full size, upright, in sRGB, without metadata.
// - Files appear under their final name only once complete; on failure the
//   files this call already wrote are removed.
class VipsDerivativeEncoder final : public BundleDerivativeEncoding {
public:
    static constexpr int jpegQuality = 85;

    std::optional<BundleImageInfo> inspect(const QString &source) const override;
    BundleDerivativeResult encode(
        const QString &source, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const override;
    BundleDerivativeResult encode(const BundleRasterImage &image, const std::vector<BundleTierTarget> &tiers,
        const QString &baseName) const override;
    std::optional<QString> writePng(const QString &source, const QString &destination) const override;
};

} // namespace sorvane
