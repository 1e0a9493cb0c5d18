#include "bundle/BundleBrandingJson.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

using L = QLatin1StringView;

BundleBrandingOverlayJson BundleBrandingOverlayJson::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleBrandingOverlayJson b;
    b.enabled = boolean(r.take(L("enabled")));
    b.corner = string(r.take(L("corner")));
    b.sizePercent = number(r.take(L("size_percent")));
    b.opacity = number(r.take(L("opacity")));
    b.marginPercent = number(r.take(L("margin_percent")));
    b.unknownMemberCount = r.unknownCount();
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
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleBrandingJson b;
    b.displayName = string(r.take(L("display_name")));
    b.logoAsset = string(r.take(L("logo_asset")));
    b.holding = boolean(r.take(L("holding")));
    if (const auto overlay = object(r.take(L("overlay"))))
        b.overlay = BundleBrandingOverlayJson::fromJson(*overlay);
    b.unknownMemberCount = r.unknownCount();
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
