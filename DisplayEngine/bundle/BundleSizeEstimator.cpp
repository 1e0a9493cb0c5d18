#include "bundle/BundleSizeEstimator.h"

#include "bundle/BundleFileOps.h"

namespace sorvane {

BundleSizeEstimate BundleSizeEstimator::estimate(
    const BundleWriteRequest &request, const std::vector<BundleSourceFile> &sources)
{
    BundleSizeEstimate estimate;
    estimate.includesOriginals = request.includeOriginals;
    for (const BundleSourceFile &source : sources) {
        estimate.sourceBytes += source.bytes;
        // A derivative is never larger than its tier's typical size, nor much larger than a small source.
        const qint64 stills = std::min(source.bytes, typicalTileBytes) + std::min(source.bytes, typicalFullBytes);
        if (source.isVideo) {
            ++estimate.videoCount;
            estimate.videoBytes += source.bytes;
            estimate.derivativeBytes += typicalTileBytes + typicalFullBytes; // the poster
        } else {
            ++estimate.imageCount;
            estimate.derivativeBytes += stills;
        }
        if (request.includeOriginals)
            estimate.originalBytes += source.bytes;
    }
    if (request.flavor == BundleFlavor::withPlayer && request.playerPayloadDirectory)
        estimate.playerBytes = BundleFileOps::treeBytes(*request.playerPayloadDirectory);
    return estimate;
}

} // namespace sorvane
