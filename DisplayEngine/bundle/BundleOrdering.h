#pragma once

#include "bundle/BundleItem.h"
#include "bundle/BundleSort.h"

#include <optional>
#include <vector>

namespace sorvane {

struct BundleOrderingResult {
    // 0-based indices into the item list given to the ordering.
    std::vector<qsizetype> positions;
    // A date sort met an item without a usable date, so manifest order was used.
    bool fellBackToManifestOrder = false;

    bool operator==(const BundleOrderingResult &) const = default;
};

// Turns a manifest's sort and seed into the reproducible play order of its items.
class BundleOrdering {
public:
    static BundleOrderingResult order(
        const std::vector<BundleItem> &items, BundleSort sort, std::optional<quint64> shuffleSeed);
};

} // namespace sorvane
