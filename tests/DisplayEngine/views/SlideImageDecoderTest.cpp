#include "views/SlideImageDecoder.h"

#include "TestImages.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>

namespace sorvane {
namespace {

using test::claimingJpegSize;
using test::encoded;
using test::halves;
using test::withExifOrientation;

using SlideImageDecoderTest = test::FileTest;

struct ScalingCase {
    const char *name;
    const char *format;
    QSize source;
    ImageScalingMode scaling;
    QSize target;
    QSize expected;
    QSize painted = {}; // when smaller than the header says the source is
};

TEST_F(SlideImageDecoderTest, DecodesAtTheSizeTheScalingModeNeeds)
{
    using enum ImageScalingMode;
    const ScalingCase cases[] = {
        {"landscape fit", "png", {800, 600}, fitToScreen, {400, 400}, {400, 300}},
        {"landscape fill", "png", {800, 600}, fillScreen, {400, 400}, {533, 400}},
        {"fill never enlarges either side", "png", {800, 600}, fillScreen, {1000, 500}, {800, 600}},
        {"actual size ignores the target", "png", {800, 600}, actualSize, {400, 400}, {800, 600}},
        {"no target", "png", {800, 600}, fitToScreen, {}, {800, 600}},
        {"thin strip keeps a pixel", "png", {4000, 2}, fitToScreen, {100, 100}, {100, 1}},
        {"progressive jpeg fit", "progressive", {1600, 1200}, fitToScreen, {400, 400}, {400, 300}},
        // Unlike progressive ones, these only ever hold a strip of the picture; the short file decodes as grey.
        {"large sequential jpeg streams", "jpg", {12000, 9000}, fitToScreen, {400, 400}, {400, 300}, {64, 64}},
    };
    for (const ScalingCase &c : cases) {
        SCOPED_TRACE(c.name);
        const QSize painted = c.painted.isValid() ? c.painted : c.source;
        QByteArray bytes = encoded(halves(painted), c.format);
        if (painted != c.source)
            bytes = claimingJpegSize(bytes, c.source);
        const QString path = write(QStringLiteral("picture"), bytes);
        const SlideDecodeResult result = SlideImageDecoder::decode({path, c.target, c.scaling, ImageFilter::none});
        ASSERT_TRUE(result.ok()) << result.error.toStdString();
        EXPECT_EQ(result.image.size(), c.expected);
        EXPECT_EQ(result.sourceSize, c.source);
    }
}

// A GIF's header names its first frame (24 x 16) while the decoder draws the whole logical
// screen (4096 x 24): the sizes follow the picture, not the header.
TEST_F(SlideImageDecoderTest, AGifLargerThanItsFrameStillFitsWhatWasAsked)
{
    const QString path = write(QStringLiteral("screen.gif"),
        QByteArray::fromBase64(
            "R0lGODlhABAYAIAAAEdwTMhaHiH/C05FVFNDQVBFMi4wAwEAAAAh+QQFAAAAACwAAAAAGAAQAAADEYyPqS3tD6OctNqLUklGRrMi"
            "QwRLFAA7"));
    for (const ImageScalingMode scaling : {ImageScalingMode::fitToScreen, ImageScalingMode::actualSize}) {
        const SlideDecodeResult result = SlideImageDecoder::decode({path, {1024, 768}, scaling});
        ASSERT_TRUE(result.ok()) << result.error.toStdString();
        EXPECT_EQ(result.sourceSize, QSize(4096, 24));
        EXPECT_EQ(result.image.size(), scaling == ImageScalingMode::actualSize ? QSize(4096, 24) : QSize(1024, 6));
    }
}

struct OrientationCase {
    quint16 orientation;
    ImageScalingMode scaling;
    QSize target;
    QSize expected;
    // Where the stored picture's red left half ends up.
    QPoint red;
    QPoint blue;
};

TEST_F(SlideImageDecoderTest, TurnsPicturesUprightBeforeScalingThem)
{
    using enum ImageScalingMode;
    const QByteArray landscape = encoded(halves({400, 200}), "jpg");
    const OrientationCase cases[] = {
        {1, actualSize, {}, {400, 200}, {10, 100}, {390, 100}},
        {3, actualSize, {}, {400, 200}, {390, 100}, {10, 100}},
        {6, actualSize, {}, {200, 400}, {100, 10}, {100, 390}},
        {8, actualSize, {}, {200, 400}, {100, 390}, {100, 10}},
        {6, fitToScreen, {200, 100}, {50, 100}, {25, 5}, {25, 95}},
        {6, fillScreen, {100, 300}, {150, 300}, {75, 10}, {75, 290}},
    };
    for (const OrientationCase &c : cases) {
        SCOPED_TRACE(::testing::Message()
            << "orientation " << c.orientation << " target " << c.target.width() << "x" << c.target.height());
        const QString path = write(QStringLiteral("turned.jpg"), withExifOrientation(landscape, c.orientation));
        const SlideDecodeResult result = SlideImageDecoder::decode({path, c.target, c.scaling});
        ASSERT_TRUE(result.ok()) << result.error.toStdString();
        EXPECT_EQ(result.image.size(), c.expected);
        EXPECT_EQ(result.sourceSize, c.orientation >= 5 ? QSize(200, 400) : QSize(400, 200));
        const QRgb red = result.image.pixel(c.red);
        const QRgb blue = result.image.pixel(c.blue);
        EXPECT_GT(qRed(red), 200);
        EXPECT_LT(qBlue(red), 60);
        EXPECT_GT(qBlue(blue), 200);
        EXPECT_LT(qRed(blue), 60);
    }
}

struct BrokenCase {
    const char *name;
    const char *fileName;
    bool exists;
    QByteArray bytes;
    ImageScalingMode scaling;
    // The exact error, when it is this program's own; else any error will do.
    const char *error;
};

TEST_F(SlideImageDecoderTest, RefusesWhatCannotOrMustNotBeShown)
{
    using enum ImageScalingMode;
    const QByteArray png = encoded(halves({64, 64}), "png");
    const QByteArray progressive = encoded(halves({64, 64}), "progressive");
    const BrokenCase cases[] = {
        {"missing file", "missing.jpg", false, {}, fitToScreen, nullptr},
        {"png signature then noise", "junk.png", true, png.left(8) + QByteArray(2048, '\x5a'), actualSize, nullptr},
        {"50000 x 50000 png", "huge.png", true, test::pngClaiming(50000, 50000), fitToScreen,
            "image is too large to show"},
        {"20000 x 20000 png at actual size", "big.png", true, test::pngClaiming(20000, 20000), actualSize,
            "image is too large to show"},
        {"within the pixel count, over the memory limit", "wide.png", true, test::pngClaiming(16384, 16384), actualSize,
            nullptr},
        // Progressive JPEGs need memory for every coefficient of the picture, whatever size they decode at.
        {"12000 x 9000 progressive jpeg", "wide.jpg", true, claimingJpegSize(progressive, {12000, 9000}), fitToScreen,
            "image is too large to show"},
        // Decoders for formats slides never come in stay out of reach, whatever the file is called.
        {"xpm", "icon.jpg", true, "/* XPM */\nstatic const char *x[] = {\"2 1 1 1\", \"a c #FF0000\", \"aa\"};\n",
            fitToScreen, nullptr},
    };
    for (const BrokenCase &c : cases) {
        SCOPED_TRACE(c.name);
        const QString fileName = QString::fromLatin1(c.fileName);
        const QString path = c.exists ? write(fileName, c.bytes) : dir.filePath(fileName);
        const SlideDecodeResult result = SlideImageDecoder::decode({path, {1920, 1080}, c.scaling});
        EXPECT_FALSE(result.ok());
        EXPECT_TRUE(result.image.isNull());
        EXPECT_FALSE(result.error.isEmpty());
        if (c.error)
            EXPECT_EQ(result.error.toStdString(), c.error);
        else
            EXPECT_NE(result.error.toStdString(), "image is too large to show");
    }
    // A folder where a picture should be.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("folder.jpg")));
    EXPECT_FALSE(
        SlideImageDecoder::decode({dir.filePath(QStringLiteral("folder.jpg")), {1920, 1080}, fitToScreen}).ok());
}

} // namespace
} // namespace sorvane
