#include "views/QtThumbnailDecoder.h"

#include "views/QtDecodedThumbnail.h"
#include "views/SlideImageDecoder.h"

#include <memory>

namespace sorvane {

QtThumbnailDecoder::QtThumbnailDecoder(int allocationLimitMiB) : m_allocationLimitMiB(allocationLimitMiB) { }

ThumbnailResult QtThumbnailDecoder::decode(const QUrl &url, QSize maxPixelSize)
{
    if (!url.isLocalFile())
        return {nullptr, QStringLiteral("not a local file")};
    // With no bound the slide decoder would decode the whole picture.
    if (maxPixelSize.width() <= 0 || maxPixelSize.height() <= 0)
        return {nullptr, QStringLiteral("thumbnail size must be positive")};

    SlideDecodeRequest request {url.toLocalFile(), maxPixelSize, ImageScalingMode::fitToScreen, ImageFilter::none};
    request.allocationLimitMiB = m_allocationLimitMiB;
    SlideDecodeResult decoded = SlideImageDecoder::decode(request);
    if (!decoded.ok())
        return {nullptr, decoded.error};
    return {std::make_shared<const QtDecodedThumbnail>(std::move(decoded.image)), {}};
}

} // namespace sorvane
