#pragma once

#include "bundle/BundleBrandingJson.h"
#include "bundle/BundleDisplayJSON.h"
#include "bundle/BundleItem.h"
#include "bundle/BundleManifestParts.h"
#include "bundle/BundlePlaybackJSON.h"

namespace sorvane {

// The parsed `bundle.json`. Built by a total function: every member may be
// absent; which absences are fatal is the reader's decision.
struct BundleManifest {
    std::optional<QString> format;
    std::optional<qint64> formatVersion;
    std::optional<qint64> minReaderVersion;
    std::optional<QString> bundleId;
    std::optional<QString> title;
    std::optional<QString> createdUtc;
    std::optional<BundleCreatedBy> createdBy;
    std::optional<QString> flavor;
    std::optional<bool> includeOriginals;
    std::optional<BundleCounts> counts;
    std::optional<BundleDerivatives> derivatives;
    std::optional<BundlePlaybackJSON> playback;
    std::optional<BundleDisplayJSON> display;
    std::optional<std::vector<BundlePlayerEntry>> players;
    std::optional<BundleBrandingJson> branding;
    std::optional<std::vector<BundleItem>> items;
    // True when `items` was present at all, even if it was not an array.
    bool itemsKeyPresent = false;
    int unknownMemberCount = 0;

    static BundleManifest fromJson(const QJsonObject &object);
    // As fromJson, but a huge `items` list is taken out of `object` and its entries
    // released one by one as their records are built (only memory is saved when
    // something else still shares the document).
    static BundleManifest takeFromJson(QJsonObject &object);
    // The manifest as the writer emits it, keys in schema order.
    BundleJSON toJson() const;

    // Unknown members of the manifest and of every counted object in it.
    int totalUnknownMemberCount() const;

    bool operator==(const BundleManifest &) const = default;
};

} // namespace sorvane
