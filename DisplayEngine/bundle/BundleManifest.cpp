#include "bundle/BundleManifest.h"

#include "bundle/ManifestFields.h"

#include <QJsonArray>

namespace sorvane {

using L = QLatin1StringView;

BundleManifest BundleManifest::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundleManifest m;
    m.format = string(o.value(L("format")));
    m.formatVersion = integer(o.value(L("format_version")));
    m.minReaderVersion = integer(o.value(L("min_reader_version")));
    m.bundleId = string(o.value(L("bundle_id")));
    m.title = string(o.value(L("title")));
    m.createdUtc = string(o.value(L("created_utc")));
    if (const auto createdBy = object(o.value(L("created_by"))))
        m.createdBy = BundleCreatedBy::fromJson(*createdBy);
    m.flavor = string(o.value(L("flavor")));
    m.includeOriginals = boolean(o.value(L("include_originals")));
    if (const auto counts = object(o.value(L("counts"))))
        m.counts = BundleCounts::fromJson(*counts);
    if (const auto derivatives = object(o.value(L("derivatives"))))
        m.derivatives = BundleDerivatives::fromJson(*derivatives);
    if (const auto playback = object(o.value(L("playback"))))
        m.playback = BundlePlaybackJSON::fromJson(*playback);
    if (const auto display = object(o.value(L("display"))))
        m.display = BundleDisplayJSON::fromJson(*display);
    const QJsonValue players = o.value(L("players"));
    if (players.isArray()) {
        std::vector<BundlePlayerEntry> list;
        for (const QJsonValue &entry : players.toArray())
            list.push_back(BundlePlayerEntry::fromJson(entry.toObject()));
        m.players = std::move(list);
    }
    if (const auto branding = object(o.value(L("branding"))))
        m.branding = BundleBrandingJson::fromJson(*branding);

    const auto itemsIt = o.constFind(L("items"));
    m.itemsKeyPresent = itemsIt != o.constEnd();
    if (m.itemsKeyPresent && itemsIt.value().isArray()) {
        const QJsonArray array = itemsIt.value().toArray();
        std::vector<BundleItem> items;
        items.reserve(array.size());
        // An entry that is not an object reads as an item with no members (and so no id).
        for (const QJsonValue &entry : array)
            items.push_back(BundleItem::fromJson(entry.toObject()));
        m.items = std::move(items);
    }
    m.unknownMemberCount = countUnknown(o,
        {L("format"), L("format_version"), L("min_reader_version"), L("bundle_id"), L("title"), L("created_utc"),
            L("created_by"), L("flavor"), L("include_originals"), L("counts"), L("derivatives"), L("playback"),
            L("display"), L("players"), L("branding"), L("items")});
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
