#pragma once

#include "bundle/BundleAsset.h"

#include <utility>
#include <vector>

namespace sorvane {

// One entry of the manifest's `items`.
struct BundleItem {
    std::optional<QString> id;
    std::optional<QString> mediaType;
    std::optional<QString> sourceName;
    std::optional<qint64> sourceBytes;
    std::optional<QString> sourceCreatedUtc;
    std::optional<QString> sourceModifiedUtc;
    std::optional<QString> capturedUtc;
    std::optional<bool> animated;
    // Tier name to asset, in the order read (tier names sorted) or as inserted by a writer.
    std::vector<std::pair<QString, BundleAsset>> assets;
    int unknownMemberCount = 0;

    const BundleAsset *asset(const QString &tier) const;

    static BundleItem fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    // `assets` is a map: tiers compare by name, whatever order they were written or read in.
    bool operator==(const BundleItem &other) const;
};

} // namespace sorvane
