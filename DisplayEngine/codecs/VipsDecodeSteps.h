#pragma once

#include "codecs/VipsAssetProbe.h"
#include "codecs/VipsImageRef.h"

#include <QByteArray>
#include <QString>

namespace sorvane {

// The steps every libvips decode here takes: a header read first, the pixel cap, the
// colour profile, a thumbnail that shrinks on load, 8-bit sRGB at the end.
class VipsDecodeSteps {
public:
    // libvips' last error text on this thread, or `fallback` when it left none.
    static QString error(const char *fallback);
    // The header only (no pixel is decoded); empty when unreadable or without pixels.
    static VipsImageRef openHeader(const QByteArray &path);
    static bool withinPixelLimit(const VipsImage *header, qint64 limit = VipsAssetProbe::maxPixels);
    static bool needsProfileTransform(VipsImage *header);
    static VipsImageRef startThumbnail(const QByteArray &path, int width, int height, bool viaProfile);
    static VipsImageRef toSrgb(VipsImage *in);
};

} // namespace sorvane
