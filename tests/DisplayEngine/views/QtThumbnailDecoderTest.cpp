#include "views/QtThumbnailDecoder.h"

#include "TestImages.h"
#include "views/QtDecodedThumbnail.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QUrl>

namespace sorvane {
namespace {

using test::encoded;
using test::halves;

class QtThumbnailDecoderTest : public test::FileTest {
protected:
    QUrl write(const QString &name, const QByteArray &bytes)
    {
        return QUrl::fromLocalFile(FileTest::write(name, bytes));
    }

    // The decoded pixels; a null image when the result holds none.
    static QImage imageOf(const ThumbnailResult &result)
    {
        const auto *decoded = dynamic_cast<const QtDecodedThumbnail *>(result.thumbnail.get());
        EXPECT_NE(decoded, nullptr);
        return decoded ? decoded->image() : QImage();
    }
};

TEST_F(QtThumbnailDecoderTest, DecodesALargePhotoAtTileSizeWithoutHoldingItWhole)
{
    // A real 8000 x 6000 JPEG, written from a 1-bit picture so the test itself stays small:
    // black left half, white right half.
    QImage picture(8000, 6000, QImage::Format_Mono);
    picture.fill(1);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width() / 2; ++x)
            picture.setPixel(x, y, 0);
    }
    picture.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    const QUrl url = write(QStringLiteral("camera.jpg"), encoded(picture, "jpg"));
    picture = QImage();

    // 16 MiB cannot hold the whole picture (183 MiB), only what a reduced-scale decode allocates.
    QtThumbnailDecoder decoder(16);
    const ThumbnailResult tile = decoder.decode(url, {256, 256});
    ASSERT_TRUE(tile.ok()) << tile.error.toStdString();
    EXPECT_EQ(tile.size(), QSize(256, 192));
    const QImage image = imageOf(tile);
    EXPECT_LT(qGray(image.pixel(10, 96)), 40);
    EXPECT_GT(qGray(image.pixel(245, 96)), 215);

    // The limit is what the tile decode stayed within: the whole picture does not fit in it.
    EXPECT_FALSE(decoder.decode(url, {8000, 6000}).ok());
}

struct RefusedCase {
    const char *name;
    QUrl url;
    QSize tile;
    // The exact error, when it is this program's own; else any error will do.
    const char *error;
};

TEST_F(QtThumbnailDecoderTest, RefusesBombsAndWhatIsNoLocalPicture)
{
    const QUrl photo = write(QStringLiteral("photo.png"), encoded(halves({64, 64}), "png"));
    const RefusedCase cases[] = {
        {"png claiming 50000 x 50000", write(QStringLiteral("bomb.png"), test::pngClaiming(50000, 50000)), {256, 256},
            "image is too large to show"},
        // Within the pixel count, but a PNG decodes whole before it is scaled: over the memory limit.
        {"png claiming 16384 x 16384", write(QStringLiteral("wide.png"), test::pngClaiming(16384, 16384)), {256, 256},
            nullptr},
        // A sequential JPEG streams, but asked for whole it needs 550 MiB at once.
        {"jpeg claiming 12000 x 12000, whole",
            write(
                QStringLiteral("claims.jpg"), test::claimingJpegSize(encoded(halves({64, 64}), "jpg"), {12000, 12000})),
            {12000, 12000}, nullptr},
        {"not a picture", write(QStringLiteral("notes.jpg"), "just some notes\n"), {256, 256}, nullptr},
        {"remote address", QUrl(QStringLiteral("https://example.com/photo.png")), {256, 256}, "not a local file"},
        {"no tile size", photo, {0, 0}, "thumbnail size must be positive"},
    };
    for (const int limitMiB : {SlideDecodeRequest::kDefaultAllocationLimitMiB, 0}) {
        // 0 would mean no limit at all to the image reader; it must fall back to the default.
        QtThumbnailDecoder decoder(limitMiB);
        for (const RefusedCase &c : cases) {
            SCOPED_TRACE(::testing::Message() << c.name << ", limit " << limitMiB);
            const ThumbnailResult result = decoder.decode(c.url, c.tile);
            EXPECT_FALSE(result.ok());
            EXPECT_EQ(result.thumbnail, nullptr);
            EXPECT_FALSE(result.error.isEmpty());
            if (c.error)
                EXPECT_EQ(result.error.toStdString(), c.error);
        }
    }
    EXPECT_TRUE(QtThumbnailDecoder().decode(photo, {256, 256}).ok());
}

} // namespace
} // namespace sorvane
