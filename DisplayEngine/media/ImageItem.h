#pragma once

#include "media/AnimationType.h"
#include "media/CloudSource.h"
#include "media/ImageMetadata.h"
#include "media/MediaType.h"
#include "media/VideoTier.h"

#include <QString>
#include <QUrl>
#include <QUuid>

#include <memory>
#include <optional>

namespace sorvane {

// One photo or video to show. Everything that handles media passes these,
// never a bare URL, because the same file may be listed twice and each listing
// is a separate item: `id` is the identity, the URL is not.
class ImageItem {
public:
    // Makes a new item with a fresh `id`. The defaults describe a plain local
    // still image, so `ImageItem(QUrl::fromLocalFile(path))` is such an item.
    explicit ImageItem(QUrl url, QString relativePath = {}, qint64 originalIndex = 0, bool isAnimated = false,
        AnimationType animationType = AnimationType::none, std::optional<CloudSource> cloudSource = std::nullopt,
        std::optional<ImageMetadata> metadata = std::nullopt, MediaType mediaType = MediaType::image,
        std::optional<VideoTier> videoTier = std::nullopt, bool isCloudOnlyVideo = false);

    const QUuid &id() const { return m_id; }
    // The file on disk; for a cloud item, the local path or placeholder standing for it.
    const QUrl &url() const { return m_url; }

    // Relative to the folder or bundle root the file was found in; empty when unknown.
    const QString &relativePath() const { return m_relativePath; }
    void setRelativePath(const QString &relativePath) { m_relativePath = relativePath; }

    // Position in the order the items were first listed.
    qint64 originalIndex() const { return m_originalIndex; }
    void setOriginalIndex(qint64 originalIndex) { m_originalIndex = originalIndex; }

    bool isAnimated() const { return m_isAnimated; }
    void setAnimated(bool isAnimated) { m_isAnimated = isAnimated; }

    AnimationType animationType() const { return m_animationType; }
    void setAnimationType(AnimationType animationType) { m_animationType = animationType; }

    // Present only for items that come from an online store.
    const std::optional<CloudSource> &cloudSource() const;
    void setCloudSource(const std::optional<CloudSource> &cloudSource);

    const std::optional<ImageMetadata> &metadata() const;
    void setMetadata(const std::optional<ImageMetadata> &metadata);

    MediaType mediaType() const { return m_mediaType; }
    void setMediaType(MediaType mediaType) { m_mediaType = mediaType; }

    // For videos only: how well the platform plays the container.
    std::optional<VideoTier> videoTier() const { return m_videoTier; }
    void setVideoTier(std::optional<VideoTier> videoTier) { m_videoTier = videoTier; }

    // A video that exists only in the online store, with no playable local copy.
    bool isCloudOnlyVideo() const { return m_isCloudOnlyVideo; }
    void setCloudOnlyVideo(bool isCloudOnlyVideo) { m_isCloudOnlyVideo = isCloudOnlyVideo; }

    // The metadata's name when there is metadata, otherwise the URL's file name.
    QString displayName() const;
    bool isCloudItem() const { return cloudSource().has_value(); }

    // Identity only. Items are only ever compared within one list, where an id
    // stands for exactly one set of fields, so comparing the rest would only
    // cost time.
    friend bool operator==(const ImageItem &a, const ImageItem &b) noexcept { return a.m_id == b.m_id; }

private:
    // What only online items carry, kept apart and shared between copies: a folder of local
    // files lists hundreds of thousands of items, each copied into every window's order.
    struct Online {
        std::optional<CloudSource> cloudSource;
        std::optional<ImageMetadata> metadata;
    };
    void setOnline(Online online);

    QUuid m_id;
    QUrl m_url;
    QString m_relativePath;
    qint64 m_originalIndex;
    bool m_isAnimated;
    AnimationType m_animationType;
    std::shared_ptr<const Online> m_online;
    MediaType m_mediaType;
    std::optional<VideoTier> m_videoTier;
    bool m_isCloudOnlyVideo;
};

// Hashes the identity, consistent with ==.
size_t qHash(const ImageItem &item, size_t seed = 0) noexcept;

} // namespace sorvane
