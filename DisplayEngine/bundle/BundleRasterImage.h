#pragma once

#include <QByteArray>

namespace sorvane {

// Decoded pixels handed between codecs without a GUI library: 8-bit RGB,
// rows tightly packed (width * 3 bytes each), top row first.
struct BundleRasterImage {
    int width = 0;
    int height = 0;
    QByteArray rgb;

    bool isValid() const { return width > 0 && height > 0 && rgb.size() == qsizetype(width) * height * 3; }
};

} // namespace sorvane
