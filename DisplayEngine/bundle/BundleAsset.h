#pragma once

#include "bundle/BundleJSON.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace sorvane {

// One file of an item in one tier (`assets.<tier>` of the manifest).
struct BundleAsset {
    std::optional<QString> path;
    std::optional<qint64> w;
    std::optional<qint64> h;
    std::optional<qint64> bytes;
    std::optional<QString> sha256;
    std::optional<double> durationSeconds;
    std::optional<QString> container;
    std::optional<QString> videoCodec;
    std::optional<QString> audioCodec;
    std::optional<bool> hasAudio;

    static BundleAsset fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleAsset &) const = default;
};

} // namespace sorvane
