#include "views/ImageFilterEffect.h"

#include <array>

namespace sorvane {

namespace {

// Rec. 709 luma weights in 1/65536ths (they sum to 65536, so white stays 255).
int luma(int r, int g, int b)
{
    return (r * 13933 + g * 46871 + b * 4732 + 32768) >> 16;
}

int clampTo255(int value)
{
    return value > 255 ? 255 : value;
}

struct BlackAndWhite {
    QRgb operator()(int r, int g, int b, int a) const
    {
        const int y = luma(r, g, b);
        return qRgba(y, y, y, a);
    }
};

// The classic sepia matrix in 1/1024ths; every coefficient of a row is at least the one
// below it, so the result always has r >= g >= b.
struct Sepia {
    QRgb operator()(int r, int g, int b, int a) const
    {
        return qRgba(clampTo255((r * 402 + g * 787 + b * 194 + 512) >> 10),
            clampTo255((r * 357 + g * 702 + b * 172 + 512) >> 10),
            clampTo255((r * 279 + g * 547 + b * 134 + 512) >> 10), a);
    }
};

using ChannelCurve = std::array<uchar, 256>;

constexpr ChannelCurve linearCurve(int low, int high)
{
    ChannelCurve curve {};
    for (int i = 0; i < 256; ++i)
        curve[i] = uchar(low + (i * (high - low) + 127) / 255);
    return curve;
}

// Vintage: saturation cut to 60 %, then each channel mapped linearly onto a warm, faded range
// (R 34-245, G 26-235, B 18-215): lifted blacks, dimmed whites, lower contrast, warm cast.
struct Vintage {
    static constexpr ChannelCurve red = linearCurve(34, 245);
    static constexpr ChannelCurve green = linearCurve(26, 235);
    static constexpr ChannelCurve blue = linearCurve(18, 215);

    QRgb operator()(int r, int g, int b, int a) const
    {
        const int grey = luma(r, g, b) * 410;
        const auto faded = [grey](int c) { return (grey + c * 614 + 512) >> 10; };
        return qRgba(red[faded(r)], green[faded(g)], blue[faded(b)], a);
    }
};

template <typename Recolour> void recolour(QImage &image, Recolour recolourPixel)
{
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    const int width = image.width();
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            QRgb pixel = line[x];
            const int alpha = qAlpha(pixel);
            // The colour formulas work on straight colour; translucent premultiplied pixels are
            // unpremultiplied around them so vintage's offsets stay within the alpha.
            if (premultiplied && alpha != 255) {
                if (alpha == 0)
                    continue;
                pixel = qUnpremultiply(pixel);
                line[x] = qPremultiply(recolourPixel(qRed(pixel), qGreen(pixel), qBlue(pixel), alpha));
            } else {
                line[x] = recolourPixel(qRed(pixel), qGreen(pixel), qBlue(pixel), alpha);
            }
        }
    }
}

} // namespace

void ImageFilterEffect::apply(QImage &image, ImageFilter filter)
{
    if (filter == ImageFilter::none || image.isNull())
        return;

    const auto isRgb32 = [](QImage::Format format) {
        return format == QImage::Format_RGB32 || format == QImage::Format_ARGB32
            || format == QImage::Format_ARGB32_Premultiplied;
    };
    if (!isRgb32(image.format())) {
        image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
        // A conversion that ran out of memory leaves other pixels behind, which the loops below
        // would misread.
        if (image.isNull() || !isRgb32(image.format()))
            return;
    }

    switch (filter) {
    case ImageFilter::none:
        break;
    case ImageFilter::blackAndWhite:
        recolour(image, BlackAndWhite {});
        break;
    case ImageFilter::sepia:
        recolour(image, Sepia {});
        break;
    case ImageFilter::vintage:
        recolour(image, Vintage {});
        break;
    }
}

} // namespace sorvane
