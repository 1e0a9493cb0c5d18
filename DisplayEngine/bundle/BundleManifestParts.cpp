#include "bundle/BundleManifestParts.h"

#include "bundle/ManifestFields.h"

#include <QJsonArray>

namespace sorvane {

using L = QLatin1StringView;
using namespace ManifestFields;

BundleCreatedBy BundleCreatedBy::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    BundleCreatedBy c;
    c.app = string(r.take(L("app")));
    c.appVersion = string(r.take(L("app_version")));
    c.platform = string(r.take(L("platform")));
    c.writerVersion = integer(r.take(L("writer_version")));
    c.unknownMemberCount = r.unknownCount();
    return c;
}

BundleJSON BundleCreatedBy::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("app"), app);
    j.insert(QStringLiteral("app_version"), appVersion);
    j.insert(QStringLiteral("platform"), platform);
    j.insert(QStringLiteral("writer_version"), writerVersion);
    return j;
}

BundleCounts BundleCounts::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    BundleCounts c;
    c.items = integer(r.take(L("items")));
    c.assetFiles = integer(r.take(L("asset_files")));
    c.assetBytes = integer(r.take(L("asset_bytes")));
    c.originalFiles = integer(r.take(L("original_files")));
    c.originalBytes = integer(r.take(L("original_bytes")));
    c.unknownMemberCount = r.unknownCount();
    return c;
}

BundleJSON BundleCounts::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("items"), items);
    j.insert(QStringLiteral("asset_files"), assetFiles);
    j.insert(QStringLiteral("asset_bytes"), assetBytes);
    j.insert(QStringLiteral("original_files"), originalFiles);
    j.insert(QStringLiteral("original_bytes"), originalBytes);
    return j;
}

BundleTier BundleTier::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    BundleTier t;
    t.name = string(r.take(L("name")));
    t.targetLongEdge = integer(r.take(L("target_long_edge")));
    t.dir = string(r.take(L("dir")));
    return t;
}

BundleJSON BundleTier::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("name"), name);
    j.insert(QStringLiteral("target_long_edge"), targetLongEdge);
    j.insert(QStringLiteral("dir"), dir);
    return j;
}

BundleDerivatives BundleDerivatives::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    BundleDerivatives d;
    const QJsonValue tiers = r.take(L("tiers"));
    if (tiers.isArray()) {
        std::vector<BundleTier> list;
        for (const QJsonValue &tier : tiers.toArray())
            list.push_back(BundleTier::fromJson(tier.toObject()));
        d.tiers = std::move(list);
    }
    d.filtersBakedIn = boolean(r.take(L("filters_baked_in")));
    d.orientationBakedIn = boolean(r.take(L("orientation_baked_in")));
    d.metadataStripped = boolean(r.take(L("metadata_stripped")));
    d.unknownMemberCount = r.unknownCount();
    return d;
}

BundleJSON BundleDerivatives::toJson() const
{
    BundleJSON j = BundleJSON::object();
    if (tiers) {
        BundleJSON list = BundleJSON::array();
        for (const auto &tier : *tiers)
            list.append(tier.toJson());
        j.insert(QStringLiteral("tiers"), list);
    }
    j.insert(QStringLiteral("filters_baked_in"), filtersBakedIn);
    j.insert(QStringLiteral("orientation_baked_in"), orientationBakedIn);
    j.insert(QStringLiteral("metadata_stripped"), metadataStripped);
    return j;
}

BundlePlayerEntry BundlePlayerEntry::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    BundlePlayerEntry p;
    p.platform = string(r.take(L("platform")));
    p.entry = string(r.take(L("entry")));
    p.payloadDir = string(r.take(L("payload_dir")));
    p.playerVersion = string(r.take(L("player_version")));
    p.readerCapabilityVersion = integer(r.take(L("reader_capability_version")));
    p.bytes = integer(r.take(L("bytes")));
    return p;
}

BundleJSON BundlePlayerEntry::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("platform"), platform);
    j.insert(QStringLiteral("entry"), entry);
    j.insert(QStringLiteral("payload_dir"), payloadDir);
    j.insert(QStringLiteral("player_version"), playerVersion);
    j.insert(QStringLiteral("reader_capability_version"), readerCapabilityVersion);
    j.insert(QStringLiteral("bytes"), bytes);
    return j;
}

} // namespace sorvane
