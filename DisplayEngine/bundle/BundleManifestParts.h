#pragma once

#include "bundle/BundleJSON.h"

#include <QJsonObject>
#include <QString>
#include <optional>
#include <vector>

namespace sorvane {

// The manifest's small descriptive records. They are grouped here because each is
// a handful of optional members with no behaviour of its own.

// `created_by` (counted).
struct BundleCreatedBy {
    std::optional<QString> app;
    std::optional<QString> appVersion;
    std::optional<QString> platform;
    std::optional<qint64> writerVersion;
    int unknownMemberCount = 0;

    static BundleCreatedBy fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleCreatedBy &) const = default;
};

// `counts` (counted).
struct BundleCounts {
    std::optional<qint64> items;
    std::optional<qint64> assetFiles;
    std::optional<qint64> assetBytes;
    std::optional<qint64> originalFiles;
    std::optional<qint64> originalBytes;
    int unknownMemberCount = 0;

    static BundleCounts fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleCounts &) const = default;
};

// `derivatives.tiers[]` (not counted).
struct BundleTier {
    std::optional<QString> name;
    std::optional<qint64> targetLongEdge;
    std::optional<QString> dir;

    static BundleTier fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleTier &) const = default;
};

// `derivatives` (counted).
struct BundleDerivatives {
    std::optional<std::vector<BundleTier>> tiers;
    std::optional<bool> filtersBakedIn;
    std::optional<bool> orientationBakedIn;
    std::optional<bool> metadataStripped;
    int unknownMemberCount = 0;

    static BundleDerivatives fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleDerivatives &) const = default;
};

// `players[]` (not counted).
struct BundlePlayerEntry {
    std::optional<QString> platform;
    std::optional<QString> entry;
    std::optional<QString> payloadDir;
    std::optional<QString> playerVersion;
    std::optional<qint64> readerCapabilityVersion;
    std::optional<qint64> bytes;

    static BundlePlayerEntry fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundlePlayerEntry &) const = default;
};

} // namespace sorvane
