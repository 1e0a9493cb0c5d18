#pragma once

#include "bundle/BundleAssetProbing.h"

#include <memory>

namespace sorvane {

// How deep the per-file checks of an open go, cheapest first.
enum class BundleVerification { sizeAndCount, decode, full };

struct BundleOpenOptions {
    BundleVerification verification = BundleVerification::sizeAndCount;
    // Consulted for `decode` and `full`; without one those levels check no decoding.
    std::shared_ptr<const BundleAssetProbing> assetProbe;
    bool supportsVideo = true;
    bool supportsAnimation = true;
};

} // namespace sorvane
