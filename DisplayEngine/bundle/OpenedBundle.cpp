#include "bundle/OpenedBundle.h"

#include "EngineLog.h"
#include "bundle/BundleFormat.h"
#include "bundle/BundleOrdering.h"
#include "bundle/BundleSort.h"

#include <unordered_map>

namespace sorvane {

BundleMediaItem *OpenedBundle::item(const QString &itemId) const
{
    for (const auto &candidate : items) {
        if (candidate->id == itemId)
            return candidate.get();
    }
    return nullptr;
}

std::optional<QUrl> OpenedBundle::markUndecodable(const QString &itemId, const QString &tier)
{
    BundleMediaItem *target = item(itemId);
    if (!target)
        return std::nullopt;

    BundleReport report;
    report.code = BundleReportCode::itemAssetUndecodable;
    report.message
        = QStringLiteral("Item %1: %2 decoded as garbage; fell down the resolution ladder.").arg(itemId, tier);
    report.itemId = itemId;
    if (const auto found = target->resolved.find(tier); found != target->resolved.end())
        report.assetPath = found->second.asset.path;
    mutableReports.push_back(std::move(report));
    qCDebug(lcEngine, "Undecodable asset for item %s; laddering down.", qUtf8Printable(itemId));

    target->undecodable.insert(tier);
    if (auto next = target->url(BundleFormat::tierFull))
        return next;

    const bool alreadyListed = std::any_of(
        integrity->missingItems.begin(), integrity->missingItems.end(), [&](const BundleMissingItem &missing) {
            return missing.itemId == itemId && missing.reason == BundleReportCode::itemAssetUndecodable;
        });
    if (!alreadyListed) {
        integrity->missingItems.push_back({itemId, BundleReportCode::itemAssetUndecodable,
            QStringLiteral("every rung of the resolution ladder failed to decode")});
    }
    return std::nullopt;
}

const std::vector<qsizetype> &OpenedBundle::playOrder()
{
    if (m_playOrder)
        return *m_playOrder;
    static const std::vector<BundleItem> none;
    const std::vector<BundleItem> &manifestItems = manifest.items ? *manifest.items : none;
    std::optional<quint64> seed;
    if (playback.shuffleSeed)
        seed = static_cast<quint64>(*playback.shuffleSeed); // the seed's bit pattern
    const BundleOrderingResult ordering = BundleOrdering::order(manifestItems, playback.sort, seed);

    if (ordering.fellBackToManifestOrder) {
        BundleReport report;
        report.code = BundleReportCode::unknownEnumValueDefaulted;
        report.fieldPath = QStringLiteral("playback.sort");
        report.unrecognizedValue = toWire(playback.sort);
        report.defaultUsed = toWire(BundleSort::sequential);
        report.message = QStringLiteral("playback.sort needs a per-item timestamp that is missing on at least one "
                                        "item; played in manifest order instead.");
        mutableReports.push_back(std::move(report));
    }

    // Positions refer to the manifest's list; keep those that became playable items.
    std::unordered_map<qsizetype, qsizetype> playableByManifestIndex;
    playableByManifestIndex.reserve(items.size());
    for (qsizetype i = 0; i < qsizetype(items.size()); ++i)
        playableByManifestIndex.emplace(items[size_t(i)]->manifestIndex, i);
    std::vector<qsizetype> order;
    order.reserve(items.size());
    for (const qsizetype position : ordering.positions) {
        const auto found = playableByManifestIndex.find(position);
        if (found != playableByManifestIndex.end())
            order.push_back(found->second);
    }
    m_playOrder = std::move(order);
    return *m_playOrder;
}

std::vector<ImageItem> OpenedBundle::imageItems()
{
    std::vector<ImageItem> list;
    for (const qsizetype position : playOrder()) {
        if (auto item = items[size_t(position)]->imageItem())
            list.push_back(std::move(*item));
    }
    return list;
}

Pcg32 OpenedBundle::generator() const
{
    return Pcg32(static_cast<quint64>(playback.shuffleSeed.value_or(0)));
}

} // namespace sorvane
