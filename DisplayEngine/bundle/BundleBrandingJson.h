#pragma once

#include "bundle/BundleJSON.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace sorvane {

// `branding.overlay`: the logo drawn in a corner of every slide.
struct BundleBrandingOverlayJson {
    std::optional<bool> enabled;
    std::optional<QString> corner;
    std::optional<double> sizePercent;
    std::optional<double> opacity;
    std::optional<double> marginPercent;
    int unknownMemberCount = 0;

    static BundleBrandingOverlayJson fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleBrandingOverlayJson &) const = default;
};

// `branding`: name, logo and overlay of whoever made the bundle.
struct BundleBrandingJson {
    std::optional<QString> displayName;
    std::optional<QString> logoAsset;
    std::optional<bool> holding;
    std::optional<BundleBrandingOverlayJson> overlay;
    int unknownMemberCount = 0;

    static BundleBrandingJson fromJson(const QJsonObject &object);
    BundleJSON toJson() const;
    bool operator==(const BundleBrandingJson &) const = default;
};

} // namespace sorvane
