#pragma once

#include "bundle/BundleJSON.h"

#include <QJsonObject>
#include <QString>
#include <optional>
#include <vector>

namespace sorvane {

// `display.preferred_per_screen[]` (unknown members not counted).
struct BundlePerScreenJSON {
    std::optional<qint64> screenOrdinal;
    std::optional<QString> preferredMode;
    std::optional<QString> preferredCollageLayout;

    static BundlePerScreenJSON fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundlePerScreenJSON &) const = default;
};

// `display`: suggested multi-screen settings.
struct BundleDisplayJSON {
    std::optional<qint64> preferredScreenCount;
    std::optional<QString> preferredControlScope;
    std::optional<QString> preferredSyncMode;
    std::optional<double> preferredPhaseDelaySeconds;
    std::optional<bool> preferDuplicateAvoidance;
    std::optional<std::vector<BundlePerScreenJSON>> preferredPerScreen;
    int unknownMemberCount = 0;

    static BundleDisplayJSON fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleDisplayJSON &) const = default;
};

} // namespace sorvane
