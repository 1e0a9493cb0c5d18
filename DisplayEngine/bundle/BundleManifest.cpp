#include "bundle/BundleManifest.h"

#include "bundle/ManifestFields.h"

#include <QJsonArray>

namespace sorvane {

using L = QLatin1StringView;

BundleManifest BundleManifest::fromJson(const QJsonObject &object)
{
    QJsonObject shared = object;
    return takeFromJson(shared);
}

BundleManifest BundleManifest::takeFromJson(QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleManifest m;
    m.format = string(r.take(L("format")));
    m.formatVersion = integer(r.take(L("format_version")));
    m.minReaderVersion = integer(r.take(L("min_reader_version")));
    m.bundleId = string(r.take(L("bundle_id")));
    m.title = string(r.take(L("title")));
    m.createdUtc = string(r.take(L("created_utc")));
    if (const auto createdBy = object(r.take(L("created_by"))))
        m.createdBy = BundleCreatedBy::fromJson(*createdBy);
    m.flavor = string(r.take(L("flavor")));
    m.includeOriginals = boolean(r.take(L("include_originals")));
    if (const auto counts = object(r.take(L("counts"))))
        m.counts = BundleCounts::fromJson(*counts);
    if (const auto derivatives = object(r.take(L("derivatives"))))
        m.derivatives = BundleDerivatives::fromJson(*derivatives);
    if (const auto playback = object(r.take(L("playback"))))
        m.playback = BundlePlaybackJSON::fromJson(*playback);
    if (const auto display = object(r.take(L("display"))))
        m.display = BundleDisplayJSON::fromJson(*display);
    const QJsonValue players = r.take(L("players"));
    if (players.isArray()) {
        std::vector<BundlePlayerEntry> list;
        for (const QJsonValue &entry : players.toArray())
            list.push_back(BundlePlayerEntry::fromJson(entry.toObject()));
        m.players = std::move(list);
    }
    if (const auto branding = object(r.take(L("branding"))))
        m.branding = BundleBrandingJson::fromJson(*branding);

    QJsonValue itemsValue = r.take(L("items"));
    m.itemsKeyPresent = !itemsValue.isUndefined();
    m.unknownMemberCount = r.unknownCount();
    if (itemsValue.isArray()) {
        QJsonArray array = itemsValue.toArray();
        itemsValue = QJsonValue();
        o.remove(L("items"));
        std::vector<BundleItem> items;
        items.reserve(size_t(array.size()));
        // Each entry is dropped once its record is made. An entry that is not an object
        // reads as an item with no members (and so no id).
        for (qsizetype i = 0; i < array.size(); ++i) {
            items.push_back(BundleItem::fromJson(array.at(i).toObject()));
            array.replace(i, QJsonValue());
        }
        m.items = std::move(items);
    }
    return m;
}

BundleJSON BundleManifest::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("format"), format);
    j.insert(QStringLiteral("format_version"), formatVersion);
    j.insert(QStringLiteral("min_reader_version"), minReaderVersion);
    j.insert(QStringLiteral("bundle_id"), bundleId);
    j.insert(QStringLiteral("title"), title);
    j.insert(QStringLiteral("created_utc"), createdUtc);
    if (createdBy)
        j.insert(QStringLiteral("created_by"), createdBy->toJson());
    j.insert(QStringLiteral("flavor"), flavor);
    j.insert(QStringLiteral("include_originals"), includeOriginals);
    if (counts)
        j.insert(QStringLiteral("counts"), counts->toJson());
    if (derivatives)
        j.insert(QStringLiteral("derivatives"), derivatives->toJson());
    if (playback)
        j.insert(QStringLiteral("playback"), playback->toJson());
    if (display)
        j.insert(QStringLiteral("display"), display->toJson());
    if (players) {
        BundleJSON list = BundleJSON::array();
        for (const auto &player : *players)
            list.append(player.toJson());
        j.insert(QStringLiteral("players"), list);
    }
    if (branding)
        j.insert(QStringLiteral("branding"), branding->toJson());
    if (items) {
        BundleJSON list = BundleJSON::array();
        for (const auto &item : *items)
            list.append(item.toJson());
        j.insert(QStringLiteral("items"), list);
    }
    return j;
}

int BundleManifest::totalUnknownMemberCount() const
{
    int total = unknownMemberCount;
    if (createdBy)
        total += createdBy->unknownMemberCount;
    if (counts)
        total += counts->unknownMemberCount;
    if (derivatives)
        total += derivatives->unknownMemberCount;
    if (playback)
        total += playback->unknownMemberCount;
    if (display)
        total += display->unknownMemberCount;
    if (branding) {
        total += branding->unknownMemberCount;
        if (branding->overlay)
            total += branding->overlay->unknownMemberCount;
    }
    if (items) {
        for (const auto &item : *items)
            total += item.unknownMemberCount;
    }
    return total;
}

} // namespace sorvane
