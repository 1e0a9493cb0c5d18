#include "bundle/BundleMediaItem.h"

#include "bundle/BundleFormat.h"
#include "media/VideoExtensions.h"

#include <QFileInfo>

namespace sorvane {

QString BundleMediaItem::displayTier() const
{
    if (mediaType == MediaType::video && resolved.count(BundleFormat::tierVideo))
        return BundleFormat::tierVideo;
    if (animationAllowed && raw.animated.value_or(false))
        return BundleFormat::tierAnimated;
    return BundleFormat::tierFull;
}

QStringList BundleMediaItem::ladder(const QString &preferring)
{
    using namespace BundleFormat;
    if (preferring == tierTile)
        return {tierTile, tierFull, tierAnimated, tierOriginal};
    // A video falls back to its poster stills.
    if (preferring == tierVideo)
        return {tierVideo, tierFull, tierTile, tierOriginal};
    // Everything else, "animated" included, takes the still ladder; an animation is
    // shown first by displayAsset(), not by the ladder.
    return {tierFull, tierTile, tierAnimated, tierOriginal};
}

const BundleResolvedAsset *BundleMediaItem::resolvedAsset(const QString &preferring) const
{
    for (const QString &tier : ladder(preferring)) {
        if (tier == BundleFormat::tierAnimated && !animationAllowed)
            continue;
        if (undecodable.contains(tier))
            continue;
        const auto found = resolved.find(tier);
        if (found != resolved.end())
            return &found->second;
    }
    return nullptr;
}

const BundleResolvedAsset *BundleMediaItem::displayAsset() const
{
    const QString first = displayTier();
    if (first != BundleFormat::tierAnimated)
        return resolvedAsset(first);
    if (!undecodable.contains(first)) {
        if (const auto found = resolved.find(first); found != resolved.end())
            return &found->second;
    }
    return resolvedAsset(BundleFormat::tierFull);
}

std::optional<QUrl> BundleMediaItem::url(const QString &preferring) const
{
    if (const BundleResolvedAsset *asset = resolvedAsset(preferring))
        return asset->url();
    return std::nullopt;
}

std::optional<ImageItem> BundleMediaItem::imageItem() const
{
    const BundleResolvedAsset *asset = displayAsset();
    if (!asset)
        return std::nullopt;
    ImageItem item(asset->url(), asset->asset.path.value_or(QString()), qint64(manifestIndex));
    const QString suffix = QFileInfo(asset->absolutePath).suffix().toLower();
    if (asset->key == BundleFormat::tierAnimated) {
        item.setAnimated(true);
        item.setAnimationType(suffix == QLatin1StringView("webp") ? AnimationType::webp : AnimationType::gif);
    }
    // A video that fell back to its poster is shown as the still it now is.
    const bool showsVideo = asset->key == BundleFormat::tierVideo;
    item.setMediaType(showsVideo ? mediaType : MediaType::image);
    if (showsVideo)
        item.setVideoTier(VideoExtensions::tierFor(suffix));
    return item;
}

} // namespace sorvane
