#include "views/ImageFilterEffect.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include <algorithm>
#include <vector>

namespace sorvane {
namespace {

constexpr ImageFilter kColourFilters[] = {ImageFilter::blackAndWhite, ImageFilter::sepia, ImageFilter::vintage};

const char *nameOf(ImageFilter filter)
{
    switch (filter) {
    case ImageFilter::none:
        return "none";
    case ImageFilter::blackAndWhite:
        return "blackAndWhite";
    case ImageFilter::sepia:
        return "sepia";
    case ImageFilter::vintage:
        return "vintage";
    }
    return "?";
}

QImage filled(QRgb colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(3, 2, format);
    image.fill(QColor::fromRgba(colour));
    return image;
}

QRgb filteredColour(QRgb colour, ImageFilter filter)
{
    QImage image = filled(colour);
    ImageFilterEffect::apply(image, filter);
    return image.pixel(1, 1);
}

// A strip of opaque colours covering hues, greys and extremes.
const std::vector<QRgb> kPalette = {qRgb(0, 0, 0), qRgb(0, 0, 255), qRgb(128, 0, 0), qRgb(255, 0, 0), qRgb(255, 0, 255),
    qRgb(128, 128, 128), qRgb(0, 255, 0), qRgb(0, 255, 255), qRgb(255, 255, 0), qRgb(255, 255, 255), qRgb(200, 120, 40),
    qRgb(30, 90, 160)};

struct Range {
    int low;
    int high;
};

struct KnownColour {
    ImageFilter filter;
    QRgb input;
    Range red, green, blue;
};

TEST(ImageFilterEffect, KnownColoursLandInTheirExpectedRanges)
{
    const KnownColour cases[] = {
        {ImageFilter::blackAndWhite, qRgb(255, 255, 255), {255, 255}, {255, 255}, {255, 255}},
        {ImageFilter::blackAndWhite, qRgb(0, 0, 0), {0, 0}, {0, 0}, {0, 0}},
        {ImageFilter::blackAndWhite, qRgb(255, 0, 0), {50, 80}, {50, 80}, {50, 80}},
        {ImageFilter::blackAndWhite, qRgb(0, 255, 0), {145, 185}, {145, 185}, {145, 185}},
        {ImageFilter::blackAndWhite, qRgb(0, 0, 255), {15, 35}, {15, 35}, {15, 35}},
        {ImageFilter::sepia, qRgb(255, 255, 255), {250, 255}, {235, 255}, {205, 245}},
        {ImageFilter::sepia, qRgb(0, 0, 0), {0, 0}, {0, 0}, {0, 0}},
        {ImageFilter::sepia, qRgb(128, 128, 128), {160, 185}, {140, 165}, {105, 130}},
        {ImageFilter::vintage, qRgb(0, 0, 0), {10, 60}, {10, 60}, {5, 60}},
        {ImageFilter::vintage, qRgb(255, 255, 255), {200, 250}, {200, 245}, {180, 240}},
    };
    for (const KnownColour &c : cases) {
        const QRgb out = filteredColour(c.input, c.filter);
        SCOPED_TRACE(::testing::Message()
            << nameOf(c.filter) << " of #" << std::hex << (c.input & 0xFFFFFF) << " gave #" << (out & 0xFFFFFF));
        EXPECT_GE(qRed(out), c.red.low);
        EXPECT_LE(qRed(out), c.red.high);
        EXPECT_GE(qGreen(out), c.green.low);
        EXPECT_LE(qGreen(out), c.green.high);
        EXPECT_GE(qBlue(out), c.blue.low);
        EXPECT_LE(qBlue(out), c.blue.high);
        EXPECT_EQ(qAlpha(out), 255);
    }
}

TEST(ImageFilterEffect, KeepsAlphaInEveryPixelFormat)
{
    const QImage::Format formats[]
        = {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888};
    const int alphas[] = {0, 1, 64, 128, 254, 255};
    for (const ImageFilter filter : kColourFilters) {
        for (const QImage::Format format : formats) {
            SCOPED_TRACE(::testing::Message() << nameOf(filter) << " format " << int(format));
            QImage image(int(std::size(alphas)), 1, QImage::Format_ARGB32);
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, 0, qRgba(200, 100, 50, alphas[x]));
            image.convertTo(format);

            ImageFilterEffect::apply(image, filter);

            ASSERT_TRUE(image.hasAlphaChannel());
            for (int x = 0; x < image.width(); ++x) {
                const QRgb stored = image.format() == QImage::Format_ARGB32_Premultiplied
                    ? reinterpret_cast<const QRgb *>(image.constScanLine(0))[x]
                    : image.pixel(x, 0);
                EXPECT_EQ(qAlpha(stored), alphas[x]) << x;
                if (image.format() == QImage::Format_ARGB32_Premultiplied) {
                    EXPECT_LE(qRed(stored), qAlpha(stored)) << x;
                    EXPECT_LE(qGreen(stored), qAlpha(stored)) << x;
                    EXPECT_LE(qBlue(stored), qAlpha(stored)) << x;
                }
            }
        }
    }
}

} // namespace
} // namespace sorvane
