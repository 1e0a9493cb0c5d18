#include "bundle/BundleBrandingJson.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

using L = QLatin1StringView;

BundleBrandingOverlayJson BundleBrandingOverlayJson::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundleBrandingOverlayJson b;
    b.enabled = boolean(o.value(L("enabled")));
    b.corner = string(o.value(L("corner")));
    b.sizePercent = number(o.value(L("size_percent")));
    b.opacity = number(o.value(L("opacity")));
    b.marginPercent = number(o.value(L("margin_percent")));
    b.unknownMemberCount
        = countUnknown(o, {L("enabled"), L("corner"), L("size_percent"), L("opacity"), L("margin_percent")});
    return b;
}

BundleJSON BundleBrandingOverlayJson::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("enabled"), enabled);
    j.insert(QStringLiteral("corner"), corner);
    j.insert(QStringLiteral("size_percent"), sizePercent);
    j.insert(QStringLiteral("opacity"), opacity);
    j.insert(QStringLiteral("margin_percent"), marginPercent);
    return j;
}

BundleBrandingJson BundleBrandingJson::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundleBrandingJson b;
    b.displayName = string(o.value(L("display_name")));
    b.logoAsset = string(o.value(L("logo_asset")));
    b.holding = boolean(o.value(L("holding")));
    if (const auto overlay = object(o.value(L("overlay"))))
        b.overlay = BundleBrandingOverlayJson::fromJson(*overlay);
    b.unknownMemberCount = countUnknown(o, {L("display_name"), L("logo_asset"), L("holding"), L("overlay")});
    return b;
}

BundleJSON BundleBrandingJson::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("display_name"), displayName);
    j.insert(QStringLiteral("logo_asset"), logoAsset);
    j.insert(QStringLiteral("holding"), holding);
    if (overlay)
        j.insert(QStringLiteral("overlay"), overlay->toJson());
    return j;
}

} // namespace sorvane
