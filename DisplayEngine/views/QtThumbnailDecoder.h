#pragma once

#include "media/ThumbnailDecoding.h"
#include "views/SlideDecodeRequest.h"

namespace sorvane {

// Decodes thumbnails with the slide decoder: same format allow-list, header checks and EXIF
// orientation, fitted inside the tile and never enlarged. JPEGs decode at a reduced scale
// straight from the file, so a tile never costs the whole photo. Results hold a
// QtDecodedThumbnail. Stateless apart from its limit: safe from any number of threads.
class QtThumbnailDecoder final : public ThumbnailDecoding {
public:
    explicit QtThumbnailDecoder(int allocationLimitMiB = SlideDecodeRequest::kDefaultAllocationLimitMiB);

    // Local files only; anything else is refused without being opened.
    ThumbnailResult decode(const QUrl &url, QSize maxPixelSize) override;

private:
    const int m_allocationLimitMiB;
};

} // namespace sorvane
