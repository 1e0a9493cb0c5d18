#include "media/ImageItem.h"

#include <QHashFunctions>

#include <utility>

namespace sorvane {

ImageItem::ImageItem(QUrl url, QString relativePath, qint64 originalIndex, bool isAnimated, AnimationType animationType,
    std::optional<CloudSource> cloudSource, std::optional<ImageMetadata> metadata, MediaType mediaType,
    std::optional<VideoTier> videoTier, bool isCloudOnlyVideo)
    : m_id(QUuid::createUuid()), m_url(std::move(url)), m_relativePath(std::move(relativePath)),
      m_originalIndex(originalIndex), m_isAnimated(isAnimated), m_animationType(animationType),
      m_cloudSource(std::move(cloudSource)), m_metadata(std::move(metadata)), m_mediaType(mediaType),
      m_videoTier(videoTier), m_isCloudOnlyVideo(isCloudOnlyVideo)
{
}

QString ImageItem::displayName() const
{
    if (m_metadata)
        return m_metadata->name;
    return m_url.fileName();
}

size_t qHash(const ImageItem &item, size_t seed) noexcept
{
    return qHash(item.id(), seed);
}

} // namespace sorvane
