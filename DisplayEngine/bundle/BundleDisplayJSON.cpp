#include "bundle/BundleDisplayJSON.h"

#include "bundle/ManifestFields.h"

#include <QJsonArray>

namespace sorvane {

using L = QLatin1StringView;

BundlePerScreenJSON BundlePerScreenJSON::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundlePerScreenJSON s;
    s.screenOrdinal = integer(r.take(L("screen_ordinal")));
    s.preferredMode = string(r.take(L("preferred_mode")));
    s.preferredCollageLayout = string(r.take(L("preferred_collage_layout")));
    return s;
}

BundleJSON BundlePerScreenJSON::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("screen_ordinal"), screenOrdinal);
    j.insert(QStringLiteral("preferred_mode"), preferredMode);
    j.insert(QStringLiteral("preferred_collage_layout"), preferredCollageLayout);
    return j;
}

BundleDisplayJSON BundleDisplayJSON::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleDisplayJSON d;
    d.preferredScreenCount = integer(r.take(L("preferred_screen_count")));
    d.preferredControlScope = string(r.take(L("preferred_control_scope")));
    d.preferredSyncMode = string(r.take(L("preferred_sync_mode")));
    d.preferredPhaseDelaySeconds = number(r.take(L("preferred_phase_delay_seconds")));
    d.preferDuplicateAvoidance = boolean(r.take(L("prefer_duplicate_avoidance")));
    const QJsonValue perScreen = r.take(L("preferred_per_screen"));
    if (perScreen.isArray()) {
        std::vector<BundlePerScreenJSON> entries;
        for (const QJsonValue &entry : perScreen.toArray())
            entries.push_back(BundlePerScreenJSON::fromJson(entry.toObject()));
        d.preferredPerScreen = std::move(entries);
    }
    d.unknownMemberCount = r.unknownCount();
    return d;
}

BundleJSON BundleDisplayJSON::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("preferred_screen_count"), preferredScreenCount);
    j.insert(QStringLiteral("preferred_control_scope"), preferredControlScope);
    j.insert(QStringLiteral("preferred_sync_mode"), preferredSyncMode);
    j.insert(QStringLiteral("preferred_phase_delay_seconds"), preferredPhaseDelaySeconds);
    j.insert(QStringLiteral("prefer_duplicate_avoidance"), preferDuplicateAvoidance);
    if (preferredPerScreen) {
        BundleJSON entries = BundleJSON::array();
        for (const auto &entry : *preferredPerScreen)
            entries.append(entry.toJson());
        j.insert(QStringLiteral("preferred_per_screen"), entries);
    }
    return j;
}

} // namespace sorvane
