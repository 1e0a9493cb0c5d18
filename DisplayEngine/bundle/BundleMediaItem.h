#pragma once

#include "bundle/BundleItem.h"
#include "bundle/BundleResolvedAsset.h"
#include "media/ImageItem.h"
#include "media/MediaType.h"

#include <QDateTime>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <map>
#include <optional>

namespace sorvane {

// One playable item of an opened bundle with the files that passed verification.
class BundleMediaItem {
public:
    BundleItem raw;
    QString id;
    MediaType mediaType = MediaType::image;
    QString rootPath;
    qsizetype manifestIndex = 0;
    std::optional<QDateTime> sourceCreatedUtc;
    std::optional<QDateTime> sourceModifiedUtc;
    std::optional<QDateTime> capturedUtc;
    std::map<QString, BundleResolvedAsset> resolved;
    // Tiers that passed the open but failed to decode on screen.
    QSet<QString> undecodable;
    // Whether the open accepted animated copies; without it the "animated" rung is skipped.
    bool animationAllowed = true;

    QUrl rootURL() const { return QUrl::fromLocalFile(rootPath); }

    // The tier to ask for first when showing this item.
    QString displayTier() const;
    // The rungs tried, in order, when `preferring` is asked for.
    static QStringList ladder(const QString &preferring);
    // The first usable rung, or nothing when every rung is gone.
    const BundleResolvedAsset *resolvedAsset(const QString &preferring) const;
    std::optional<QUrl> url(const QString &preferring) const;
    // What to show now: the animation while it is usable (an animated item asks for it
    // first), else the rung `displayTier()` leads to.
    const BundleResolvedAsset *displayAsset() const;

    // The item as the rest of the engine passes it around, made from the file it
    // would show now (a fresh item id each time); nothing when no rung is left.
    std::optional<ImageItem> imageItem() const;
};

} // namespace sorvane
