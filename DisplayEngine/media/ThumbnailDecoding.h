#pragma once

#include "media/ThumbnailResult.h"

#include <QSize>
#include <QUrl>

namespace sorvane {

// Decodes one file into a thumbnail. The engine has no image toolkit; the views supply the real
// decoder and tests a fake one.
class ThumbnailDecoding {
public:
    virtual ~ThumbnailDecoding() = default;
    // The picture at `url`, upright and fitted inside `maxPixelSize` (never enlarged), or an
    // error. Called from worker threads, several at once, so it must be safe for that.
    virtual ThumbnailResult decode(const QUrl &url, QSize maxPixelSize) = 0;
};

} // namespace sorvane
