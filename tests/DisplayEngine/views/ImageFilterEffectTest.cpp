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

TEST(ImageFilterEffect, BlackAndWhiteIsGreyAndKeepsTheBrightnessOrder)
{
    // Rec. 709 luma of each palette colour, to order them by brightness.
    const auto luma = [](QRgb c) { return 0.2126 * qRed(c) + 0.7152 * qGreen(c) + 0.0722 * qBlue(c); };
    std::vector<QRgb> byBrightness = kPalette;
    std::sort(byBrightness.begin(), byBrightness.end(), [&](QRgb a, QRgb b) { return luma(a) < luma(b); });

    int previous = -1;
    for (const QRgb colour : byBrightness) {
        const QRgb out = filteredColour(colour, ImageFilter::blackAndWhite);
        SCOPED_TRACE(::testing::Message() << "input #" << std::hex << (colour & 0xFFFFFF));
        EXPECT_EQ(qRed(out), qGreen(out));
        EXPECT_EQ(qGreen(out), qBlue(out));
        EXPECT_GE(qRed(out), previous);
        previous = qRed(out);
    }
}

TEST(ImageFilterEffect, SepiaIsAlwaysWarm)
{
    for (const QRgb colour : kPalette) {
        const QRgb out = filteredColour(colour, ImageFilter::sepia);
        SCOPED_TRACE(::testing::Message() << "input #" << std::hex << (colour & 0xFFFFFF));
        EXPECT_GE(qRed(out), qGreen(out));
        EXPECT_GE(qGreen(out), qBlue(out));
    }
}

TEST(ImageFilterEffect, VintageFadesEveryColourAndMutesSaturation)
{
    for (const QRgb colour : kPalette) {
        const QRgb out = filteredColour(colour, ImageFilter::vintage);
        SCOPED_TRACE(::testing::Message() << "input #" << std::hex << (colour & 0xFFFFFF));
        for (const int channel : {qRed(out), qGreen(out), qBlue(out)}) {
            EXPECT_GT(channel, 0);
            EXPECT_LT(channel, 255);
        }
        // Colourfulness (the spread between channels) loses at least 30 % on vivid colours.
        const auto spread = [](QRgb c) {
            return std::max({qRed(c), qGreen(c), qBlue(c)}) - std::min({qRed(c), qGreen(c), qBlue(c)});
        };
        if (spread(colour) >= 100)
            EXPECT_LE(spread(out), spread(colour) * 7 / 10);
    }
    // Greys pick up the warm cast.
    for (const int level : {0, 64, 128, 192, 255}) {
        const QRgb out = filteredColour(qRgb(level, level, level), ImageFilter::vintage);
        EXPECT_GE(qRed(out), qGreen(out)) << level;
        EXPECT_GT(qGreen(out), qBlue(out)) << level;
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

TEST(ImageFilterEffect, PremultipliedPixelsComeOutAsTheirStraightCounterparts)
{
    QImage straight(kPalette.size(), 3, QImage::Format_ARGB32);
    const int alphas[] = {128, 200, 255};
    for (int y = 0; y < straight.height(); ++y) {
        for (int x = 0; x < straight.width(); ++x) {
            const QRgb c = kPalette[x];
            straight.setPixel(x, y, qRgba(qRed(c), qGreen(c), qBlue(c), alphas[y]));
        }
    }
    for (const ImageFilter filter : kColourFilters) {
        SCOPED_TRACE(nameOf(filter));
        QImage fromStraight = straight.copy();
        QImage fromPremultiplied = straight.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        ImageFilterEffect::apply(fromStraight, filter);
        ImageFilterEffect::apply(fromPremultiplied, filter);
        fromPremultiplied.convertTo(QImage::Format_ARGB32);
        for (int y = 0; y < straight.height(); ++y) {
            for (int x = 0; x < straight.width(); ++x) {
                const QRgb a = fromStraight.pixel(x, y);
                const QRgb b = fromPremultiplied.pixel(x, y);
                EXPECT_NEAR(qRed(a), qRed(b), 3) << x << "," << y;
                EXPECT_NEAR(qGreen(a), qGreen(b), 3) << x << "," << y;
                EXPECT_NEAR(qBlue(a), qBlue(b), 3) << x << "," << y;
                EXPECT_EQ(qAlpha(a), qAlpha(b)) << x << "," << y;
            }
        }
    }
}

TEST(ImageFilterEffect, OtherFormatsAreFilteredLikeRgb32)
{
    QImage reference(kPalette.size(), 1, QImage::Format_RGB32);
    for (int x = 0; x < reference.width(); ++x)
        reference.setPixel(x, 0, kPalette[x]);
    const QImage::Format formats[] = {QImage::Format_RGB888, QImage::Format_BGR888, QImage::Format_RGBX8888};
    for (const ImageFilter filter : kColourFilters) {
        QImage expected = reference.copy();
        ImageFilterEffect::apply(expected, filter);
        for (const QImage::Format format : formats) {
            SCOPED_TRACE(::testing::Message() << nameOf(filter) << " format " << int(format));
            QImage image = reference.convertToFormat(format);
            ImageFilterEffect::apply(image, filter);
            EXPECT_EQ(image.format(), QImage::Format_RGB32);
            EXPECT_EQ(image, expected);
        }
    }
}

TEST(ImageFilterEffect, FiltersOnlyItsOwnCopyOfSharedPixels)
{
    const QImage original = filled(qRgb(10, 200, 90));
    for (const ImageFilter filter : kColourFilters) {
        QImage copy = original;
        ImageFilterEffect::apply(copy, filter);
        EXPECT_NE(copy.constBits(), original.constBits()) << nameOf(filter);
        EXPECT_EQ(original.pixel(0, 0), qRgb(10, 200, 90)) << nameOf(filter);
    }
}

TEST(ImageFilterEffect, NoneLeavesTheImageShared)
{
    const QImage original = filled(qRgba(10, 200, 90, 120), QImage::Format_ARGB32);
    QImage copy = original;
    ImageFilterEffect::apply(copy, ImageFilter::none);
    EXPECT_EQ(copy.constBits(), original.constBits());
    EXPECT_EQ(copy.format(), QImage::Format_ARGB32);
}

TEST(ImageFilterEffect, NullImagesStayNull)
{
    for (const ImageFilter filter : kColourFilters) {
        QImage image;
        ImageFilterEffect::apply(image, filter);
        EXPECT_TRUE(image.isNull()) << nameOf(filter);
    }
}

} // namespace
} // namespace sorvane
