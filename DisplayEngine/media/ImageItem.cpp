#include "media/ImageItem.h"

#include <QHashFunctions>

#include <utility>

namespace sorvane {

ImageItem::ImageItem(QUrl url, QString relativePath, qint64 originalIndex, bool isAnimated, AnimationType animationType,
    std::optional<CloudSource> cloudSource, std::optional<ImageMetadata> metadata, MediaType mediaType,
    std::optional<VideoTier> videoTier, bool isCloudOnlyVideo)
    : m_id(QUuid::createUuid()), m_url(std::move(url)), m_relativePath(std::move(relativePath)),
      m_originalIndex(originalIndex), m_isAnimated(isAnimated), m_animationType(animationType), m_mediaType(mediaType),
      m_videoTier(videoTier), m_isCloudOnlyVideo(isCloudOnlyVideo)
{
    setOnline({std::move(cloudSource), std::move(metadata)});
}

namespace {
const std::optional<CloudSource> noCloudSource;
const std::optional<ImageMetadata> noMetadata;
} // namespace

const std::optional<CloudSource> &ImageItem::cloudSource() const
{
    return m_online ? m_online->cloudSource : noCloudSource;
}

void ImageItem::setCloudSource(const std::optional<CloudSource> &cloudSource)
{
    setOnline({cloudSource, metadata()});
}

const std::optional<ImageMetadata> &ImageItem::metadata() const
{
    return m_online ? m_online->metadata : noMetadata;
}

void ImageItem::setMetadata(const std::optional<ImageMetadata> &metadata)
{
    setOnline({cloudSource(), metadata});
}

void ImageItem::setOnline(Online online)
{
    // Replaced, never changed in place: other copies of the item share the old one.
    if (online.cloudSource || online.metadata)
        m_online = std::make_shared<const Online>(std::move(online));
    else
        m_online.reset();
}

QString ImageItem::displayName() const
{
    if (const std::optional<ImageMetadata> &stored = metadata())
        return stored->name;
    return m_url.fileName();
}

size_t qHash(const ImageItem &item, size_t seed) noexcept
{
    return qHash(item.id(), seed);
}

} // namespace sorvane
