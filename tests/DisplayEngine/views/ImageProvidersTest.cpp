// The slide and collage image providers: the ids QML hands them, and their responses.
#include "TestImages.h"

#include "bundle/BundleWireValues.h"
#include "media/ThumbnailCache.h"
#include "views/CollageImageProvider.h"
#include "views/CollageSource.h"
#include "views/QtThumbnailDecoder.h"
#include "views/SlideImageProvider.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace sorvane {
namespace {

// Paths a stick can really hold, with every character that means something in a URL.
const QString kPaths[] = {
    QStringLiteral("/photos/#1 best.png"),
    QStringLiteral("/photos/why?.jpg"),
    QStringLiteral("/photos/a+b&c=d;e,f@g:h.jpg"),
    QStringLiteral("/photos/%20 looks escaped %2F%25.jpg"),
    QStringLiteral("/photos/./dots/../..jpg"),
    QStringLiteral("/photos/back\\slash [1] {2} <3> \"q\" 'a'.jpg"),
    QString::fromUtf8("/fotos/\xC3\x85lesund/\xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x99\x82.jpg"),
};

TEST(SlideImageProvider, IdsCarryAnyPathThroughAnImageUrl)
{
    const QSize requested(1920, 1080);
    using enum ImageFilter;
    using enum ImageScalingMode;
    const ImageFilter filters[] = {none, blackAndWhite, sepia, vintage};
    const ImageScalingMode scalings[] = {fitToScreen, fillScreen, actualSize};
    size_t i = 0;
    for (const QString &path : kPaths) {
        // Every filter and scaling mode in turn.
        const ImageFilter filter = filters[i % std::size(filters)];
        const ImageScalingMode scaling = scalings[i++ % std::size(scalings)];
        SCOPED_TRACE(::testing::Message() << path.toStdString() << " " << int(filter) << " " << int(scaling));
        const SlideDecodeRequest expected {path, requested, scaling, filter};
        const QString id = SlideImageProvider::imageId(path, scaling, filter);
        EXPECT_EQ(SlideImageProvider::parseId(id, requested), expected);
        // The id exactly as QML's Image hands it to the provider.
        const QUrl url(QStringLiteral("image://slide/") + id);
        EXPECT_EQ(
            SlideImageProvider::parseId(url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1), requested),
            expected);
    }
}

TEST(ImageProviders, RejectIdsTheyDidNotMake)
{
    const char *slideIds[] = {"", "sepia", "sepia/fit_to_screen/", "/fit_to_screen/%2Fa.jpg", "sepia//%2Fa.jpg",
        "Sepia/fit_to_screen/%2Fa.jpg", "sepia/fit/%2Fa.jpg", "sepia/fit_to_screen/a.jpg",
        "sepia/fit_to_screen/photos%2Fa.jpg", "fit_to_screen/sepia/%2Fa.jpg"};
    for (const char *id : slideIds)
        EXPECT_EQ(SlideImageProvider::parseId(QString::fromLatin1(id), {100, 100}), std::nullopt) << id;

    const auto base64 = [](const char *text) {
        return QString::fromLatin1(QByteArray(text).toBase64(QByteArray::Base64UrlEncoding));
    };
    // Valid base64url of text that is not a local file URL.
    const QString collageIds[] = {QString(), QStringLiteral("not base64 at all!"), base64("https://example.com/a.jpg"),
        base64("relative/a.jpg"), base64("file:///a b.jpg")};
    for (const QString &id : collageIds)
        EXPECT_EQ(CollageImageProvider::parseId(id), QUrl()) << id.toStdString();
    // Only local files get a tile URL at all.
    EXPECT_EQ(CollageSource().imageUrl(QUrl(QStringLiteral("https://example.com/a.jpg"))), QString());
}

// Each response finishes once: with the picture at the size asked for, or with an error and no picture.
TEST(ImageProviderResponse, AnswersWithThePictureOrWhyThereIsNone)
{
    QTemporaryDir dir;
    const QString photo = dir.filePath(QStringLiteral("wide photo.png"));
    const QString garbage = dir.filePath(QStringLiteral("garbage.jpg"));
    ASSERT_TRUE(test::writeAll(photo, test::encoded(test::halves({800, 400}), "PNG")));
    ASSERT_TRUE(test::writeAll(garbage, "no picture in here"));
    SlideImageProvider slides;
    const auto cache = std::make_shared<ThumbnailCache>(std::make_shared<QtThumbnailDecoder>());
    CollageImageProvider tiles(cache);
    const auto tile = [](const QString &path) { return CollageImageProvider::imageId(QUrl::fromLocalFile(path)); };
    const auto slide = [](const QString &path) {
        return SlideImageProvider::imageId(path, ImageScalingMode::fitToScreen, ImageFilter::blackAndWhite);
    };
    const struct {
        QQuickAsyncImageProvider *provider;
        QString id;
        QSize requested;
        QSize expected; // none: an error
    } cases[] = {
        {&slides, slide(photo), {100, 100}, {100, 50}},
        // Fitted inside the tile's square and never enlarged; no size asks for the default edge.
        {&tiles, tile(photo), {200, 200}, {200, 100}},
        {&tiles, tile(photo), {}, {512, 256}},
        {&slides, slide(garbage), {100, 100}, {}},
        {&slides, QStringLiteral("not/an/id/at/all"), {100, 100}, {}},
        {&tiles, tile(dir.filePath(QStringLiteral("missing.jpg"))), {100, 100}, {}},
        {&tiles, QStringLiteral("not an id"), {100, 100}, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.id.toStdString());
        cache->clear();
        const std::unique_ptr<QQuickImageResponse> response(c.provider->requestImageResponse(c.id, c.requested));
        QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
        ASSERT_TRUE(finished.wait(10000));
        EXPECT_EQ(finished.count(), 1);
        const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
        EXPECT_EQ(response->errorString().isEmpty(), c.expected.isValid());
        const QImage image = texture ? texture->image() : QImage();
        EXPECT_EQ(texture ? image.size() : QSize(), c.expected);
        if (c.provider == &slides && texture)
            EXPECT_TRUE(qRed(image.pixel(25, 25)) == qBlue(image.pixel(25, 25))) << "black and white";
    }
}

} // namespace
} // namespace sorvane
