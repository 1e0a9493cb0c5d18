#include "views/ImageFilterEffect.h"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>

namespace sorvane {
namespace {

constexpr ImageFilter kColourFilters[] = {ImageFilter::blackAndWhite, ImageFilter::sepia, ImageFilter::vintage};

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
        {ImageFilter::blackAndWhite, qRgb(255, 0, 0), {50, 80}, {50, 80}, {50, 80}},
        {ImageFilter::blackAndWhite, qRgb(0, 255, 0), {145, 185}, {145, 185}, {145, 185}},
        {ImageFilter::sepia, qRgb(255, 255, 255), {250, 255}, {235, 255}, {205, 245}},
        {ImageFilter::vintage, qRgb(0, 0, 0), {10, 60}, {10, 60}, {5, 60}},
    };
    for (const KnownColour &c : cases) {
        QImage image(3, 2, QImage::Format_RGB32);
        image.fill(c.input);
        ImageFilterEffect::apply(image, c.filter);
        const QRgb out = image.pixel(1, 1);
        SCOPED_TRACE(::testing::Message()
            << int(c.filter) << " of #" << std::hex << (c.input & 0xFFFFFF) << " gave #" << (out & 0xFFFFFF));
        const std::pair<int, Range> channels[] = {{qRed(out), c.red}, {qGreen(out), c.green}, {qBlue(out), c.blue}};
        for (const auto &[value, range] : channels) {
            EXPECT_GE(value, range.low);
            EXPECT_LE(value, range.high);
        }
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
            SCOPED_TRACE(::testing::Message() << "filter " << int(filter) << " format " << int(format));
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
                if (image.format() == QImage::Format_ARGB32_Premultiplied)
                    EXPECT_LE(std::max({qRed(stored), qGreen(stored), qBlue(stored)}), qAlpha(stored)) << x;
            }
        }
    }
}

} // namespace
} // namespace sorvane
