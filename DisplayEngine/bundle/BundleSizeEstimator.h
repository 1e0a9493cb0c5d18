#pragma once

#include "bundle/BundleSizeEstimate.h"
#include "bundle/BundleWriter.h"

namespace sorvane {

// Estimates what an export will write, before it runs, from the sources' sizes.
class BundleSizeEstimator {
public:
    // Typical JPEG sizes of the two tiers of a camera photo at quality 85.
    static constexpr qint64 typicalTileBytes = 350'000;
    static constexpr qint64 typicalFullBytes = 1'200'000;

    static BundleSizeEstimate estimate(const BundleWriteRequest &request, const std::vector<BundleSourceFile> &sources);
};

} // namespace sorvane
