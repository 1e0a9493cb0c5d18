#include "bundle/BundleManifestParts.h"

#include "bundle/ManifestFields.h"

#include <QJsonArray>

namespace sorvane {

using L = QLatin1StringView;
using namespace ManifestFields;

BundleCreatedBy BundleCreatedBy::fromJson(const QJsonObject &o)
{
    BundleCreatedBy c;
    c.app = string(o.value(L("app")));
    c.appVersion = string(o.value(L("app_version")));
    c.platform = string(o.value(L("platform")));
    c.writerVersion = integer(o.value(L("writer_version")));
    c.unknownMemberCount = countUnknown(o, {L("app"), L("app_version"), L("platform"), L("writer_version")});
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
    BundleCounts c;
    c.items = integer(o.value(L("items")));
    c.assetFiles = integer(o.value(L("asset_files")));
    c.assetBytes = integer(o.value(L("asset_bytes")));
    c.originalFiles = integer(o.value(L("original_files")));
    c.originalBytes = integer(o.value(L("original_bytes")));
    c.unknownMemberCount
        = countUnknown(o, {L("items"), L("asset_files"), L("asset_bytes"), L("original_files"), L("original_bytes")});
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
    BundleTier t;
    t.name = string(o.value(L("name")));
    t.targetLongEdge = integer(o.value(L("target_long_edge")));
    t.dir = string(o.value(L("dir")));
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
    BundleDerivatives d;
    const QJsonValue tiers = o.value(L("tiers"));
    if (tiers.isArray()) {
        std::vector<BundleTier> list;
        for (const QJsonValue &tier : tiers.toArray())
            list.push_back(BundleTier::fromJson(tier.toObject()));
        d.tiers = std::move(list);
    }
    d.filtersBakedIn = boolean(o.value(L("filters_baked_in")));
    d.orientationBakedIn = boolean(o.value(L("orientation_baked_in")));
    d.metadataStripped = boolean(o.value(L("metadata_stripped")));
    d.unknownMemberCount
        = countUnknown(o, {L("tiers"), L("filters_baked_in"), L("orientation_baked_in"), L("metadata_stripped")});
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
    BundlePlayerEntry p;
    p.platform = string(o.value(L("platform")));
    p.entry = string(o.value(L("entry")));
    p.payloadDir = string(o.value(L("payload_dir")));
    p.playerVersion = string(o.value(L("player_version")));
    p.readerCapabilityVersion = integer(o.value(L("reader_capability_version")));
    p.bytes = integer(o.value(L("bytes")));
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
