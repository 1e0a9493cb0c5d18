#include "bundle/BundleItem.h"

#include "bundle/ManifestFields.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace sorvane {

const BundleAsset *BundleItem::asset(const QString &tier) const
{
    for (const auto &[name, asset] : assets) {
        if (name == tier)
            return &asset;
    }
    return nullptr;
}

bool BundleItem::operator==(const BundleItem &other) const
{
    return id == other.id && mediaType == other.mediaType && sourceName == other.sourceName
        && sourceBytes == other.sourceBytes && sourceCreatedUtc == other.sourceCreatedUtc
        && sourceModifiedUtc == other.sourceModifiedUtc && capturedUtc == other.capturedUtc
        && animated == other.animated && unknownMemberCount == other.unknownMemberCount
        && std::is_permutation(assets.begin(), assets.end(), other.assets.begin(), other.assets.end());
}

BundleItem BundleItem::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleItem item;
    item.id = string(r.take(QLatin1StringView("id")));
    item.mediaType = string(r.take(QLatin1StringView("media_type")));
    item.sourceName = string(r.take(QLatin1StringView("source_name")));
    item.sourceBytes = integer(r.take(QLatin1StringView("source_bytes")));
    item.sourceCreatedUtc = string(r.take(QLatin1StringView("source_created_utc")));
    item.sourceModifiedUtc = string(r.take(QLatin1StringView("source_modified_utc")));
    item.capturedUtc = string(r.take(QLatin1StringView("captured_utc")));
    item.animated = boolean(r.take(QLatin1StringView("animated")));
    if (const auto assets = object(r.take(QLatin1StringView("assets")))) {
        item.assets.reserve(assets->size());
        // Qt hands back two names that differ by a leading byte order mark as one name;
        // a tier is kept once, the first time, as asset() finds it.
        QHash<QString, bool> seen;
        const bool many = assets->size() > 8;
        for (auto it = assets->constBegin(); it != assets->constEnd(); ++it) {
            const QString tier = it.key();
            if (many ? std::exchange(seen[tier], true) : item.asset(tier) != nullptr)
                continue;
            // A tier whose value is not an object has no usable member: it reads as an empty asset.
            item.assets.emplace_back(tier, BundleAsset::fromJson(it.value().toObject()));
        }
        // Tiers are kept in name order, which is Qt's unless a folded name moved.
        const auto byName = [](const auto &a, const auto &b) { return a.first < b.first; };
        if (!std::is_sorted(item.assets.begin(), item.assets.end(), byName))
            std::sort(item.assets.begin(), item.assets.end(), byName);
    }
    item.unknownMemberCount = r.unknownCount();
    return item;
}

BundleJSON BundleItem::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("id"), id);
    j.insert(QStringLiteral("media_type"), mediaType);
    j.insert(QStringLiteral("source_name"), sourceName);
    j.insert(QStringLiteral("source_bytes"), sourceBytes);
    j.insert(QStringLiteral("source_created_utc"), sourceCreatedUtc);
    j.insert(QStringLiteral("source_modified_utc"), sourceModifiedUtc);
    j.insert(QStringLiteral("captured_utc"), capturedUtc);
    j.insert(QStringLiteral("animated"), animated);
    BundleJSON assetsJson = BundleJSON::object();
    for (const auto &[tier, asset] : assets)
        assetsJson.insert(tier, asset.toJson());
    j.insert(QStringLiteral("assets"), assetsJson);
    return j;
}

} // namespace sorvane
