#pragma once

#include "bundle/BundleBrandingJson.h"
#include "bundle/BundleDisplayJSON.h"
#include "bundle/BundleItem.h"
#include "bundle/BundleManifestParts.h"
#include "bundle/BundlePlaybackJSON.h"

#include <QLatin1StringView>

#include <array>

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
    // As fromJson, but the `items` list is taken out of `object` and its entries
    // released one by one as their records are built (only memory is saved when
    // something else still shares the document). Text is read by ManifestTextReader.
    static BundleManifest takeFromJson(QJsonObject &object);
    // The top-level members fromJson reads, `items` aside.
    static constexpr std::array<QLatin1StringView, 15> memberNames {QLatin1StringView("format"),
        QLatin1StringView("format_version"), QLatin1StringView("min_reader_version"), QLatin1StringView("bundle_id"),
        QLatin1StringView("title"), QLatin1StringView("created_utc"), QLatin1StringView("created_by"),
        QLatin1StringView("flavor"), QLatin1StringView("include_originals"), QLatin1StringView("counts"),
        QLatin1StringView("derivatives"), QLatin1StringView("playback"), QLatin1StringView("display"),
        QLatin1StringView("players"), QLatin1StringView("branding")};
    // The manifest as the writer emits it, keys in schema order.
    BundleJSON toJson() const;

    // Unknown members of the manifest and of every counted object in it.
    int totalUnknownMemberCount() const;

    bool operator==(const BundleManifest &) const = default;
};

} // namespace sorvane
