#include "codecs/VipsStillDecoder.h"
#include "ImageSamples.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace sorvane {
namespace {

using test::imageSamples;
using test::SampleFolder;

QSize halve(QSize upright)
{
    return upright / 2;
}

TEST(VipsStillDecoder, TakesOnlyWhatQtCannotReadAndDecodesItShrunk)
{
    SampleFolder &samples = imageSamples();
    if (!QFile::exists(samples.path(QStringLiteral("photo.heic"))))
        GTEST_SKIP() << "this libvips cannot write HEIF";
    const QByteArray heic = test::readAll(samples.path(QStringLiteral("photo.heic")));
    // The boxes that describe it stay whole; the coded picture after them is zeros.
    const QString zeroed = samples.path(QStringLiteral("zeroed.heic"));
    test::writeAll(zeroed, heic.left(heic.size() / 2) + QByteArray(heic.size() - heic.size() / 2, '\0'));
    const QString fifo = samples.path(QStringLiteral("pipe.heic"));
    ::mkfifo(QFile::encodeName(fifo).constData(), 0600);

    const struct {
        const char *file;
        bool handled;
        bool intact; // its pixels are the sample's
    } rows[] = {
        {"photo.heic", true, true},
        // Decoded as leniently as other viewers do, and without harm.
        {"zeroed.heic", true, false},
        {"upright.jpg", false, false},
        {"notes.jpg", false, false},
        {"pipe.heic", false, false}, // never opened, so never waited on
        {"huge.png", false, false},
    };
    for (const auto &row : rows) {
        const QString path = samples.path(QString::fromUtf8(row.file));
        EXPECT_EQ(VipsStillDecoder::handles(path), row.handled) << row.file;
        if (!row.handled)
            continue;
        const VipsStill still = VipsStillDecoder::decode(path, halve);
        EXPECT_EQ(still.size, QSize(150, 100)) << row.file << " " << still.error.toStdString();
        EXPECT_EQ(still.sourceSize, QSize(300, 200)) << row.file;
        ASSERT_EQ(still.rgba.size(), 150 * 100 * 4) << row.file;
        if (row.intact) {
            // The red mark in the top-left corner, opaque.
            const auto *pixel = reinterpret_cast<const uchar *>(still.rgba.constData()) + (10 * 150 + 10) * 4;
            EXPECT_GT(pixel[0], 180);
            EXPECT_LT(pixel[1], 80);
            EXPECT_EQ(pixel[3], 255);
        }
    }
}

} // namespace
} // namespace sorvane
