#pragma once

#include "slideshow/ImageFilter.h"

#include <QImage>

namespace sorvane {

// Colours a decoded slide on the CPU, in place.
class ImageFilterEffect {
public:
    // Recolours `image` with `filter`, keeping its alpha. Formats other than the 32-bit RGB
    // ones are converted first (to ARGB32_Premultiplied when they carry alpha, else RGB32).
    // `none` and null images are left untouched, without detaching shared data.
    static void apply(QImage &image, ImageFilter filter);
};

} // namespace sorvane
