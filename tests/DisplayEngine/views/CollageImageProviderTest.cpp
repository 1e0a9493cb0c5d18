#include "views/CollageImageProvider.h"
#include "views/CollageSource.h"

#include "TestImages.h"
#include "TestPaths.h"
#include "media/ThumbnailCache.h"
#include "views/QtThumbnailDecoder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

namespace sorvane {
namespace {

TEST(CollageImageProvider, RejectsIdsItDidNotMake)
{
    const QString ids[] = {
        QString(),
        QStringLiteral("not base64 at all!"),
        // Valid base64url of text that is not a local file URL.
        QString::fromLatin1(QByteArray("https://example.com/a.jpg").toBase64(QByteArray::Base64UrlEncoding)),
        QString::fromLatin1(QByteArray("relative/a.jpg").toBase64(QByteArray::Base64UrlEncoding)),
        QString::fromLatin1(QByteArray("file:///a b.jpg").toBase64(QByteArray::Base64UrlEncoding)),
    };
    for (const QString &id : ids)
        EXPECT_EQ(CollageImageProvider::parseId(id), QUrl()) << id.toStdString();
}

class CollageImageProviderResponse : public ::testing::Test {
protected:
    static bool finishes(QQuickImageResponse *response)
    {
        QSignalSpy finished(response, &QQuickImageResponse::finished);
        return finished.wait(10000) && finished.count() == 1;
    }

    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = dir.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return path;
    }

    static QString idFor(const QString &path) { return CollageImageProvider::imageId(QUrl::fromLocalFile(path)); }

    QTemporaryDir dir;
    std::shared_ptr<ThumbnailCache> cache = std::make_shared<ThumbnailCache>(std::make_shared<QtThumbnailDecoder>());
    CollageImageProvider provider {cache};
};

TEST_F(CollageImageProviderResponse, ServesTheThumbnailAtTheTilesSizeAndKeepsIt)
{
    const QString photo = write(QStringLiteral("wide photo.png"), test::encoded(test::halves({800, 400}), "PNG"));
    struct Case {
        QSize requested;
        QSize expected;
    };
    // Fitted inside the tile's square and never enlarged; no size asks for the default edge.
    const Case cases[] = {{{200, 200}, {200, 100}}, {{}, {512, 256}}};
    for (const Case &c : cases) {
        cache->clear();
        const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(idFor(photo), c.requested));
        ASSERT_TRUE(finishes(response.get()));
        EXPECT_TRUE(response->errorString().isEmpty()) << response->errorString().toStdString();
        const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
        ASSERT_NE(texture, nullptr);
        EXPECT_EQ(texture->textureSize(), c.expected);
    }
    EXPECT_EQ(cache->count(), 1) << "the wall's cache keeps what it decoded";
}

TEST_F(CollageImageProviderResponse, ReportsWhyATileHasNoPhoto)
{
    const QString ids[] = {
        idFor(dir.filePath(QStringLiteral("missing.jpg"))),
        idFor(write(QStringLiteral("garbage.jpg"), "no picture in here")),
        QStringLiteral("not an id"),
    };
    for (const QString &id : ids) {
        SCOPED_TRACE(id.toStdString());
        const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(id, {100, 100}));
        ASSERT_TRUE(finishes(response.get()));
        EXPECT_FALSE(response->errorString().isEmpty());
        EXPECT_EQ(std::unique_ptr<QQuickTextureFactory>(response->textureFactory()), nullptr);
    }
}

} // namespace
} // namespace sorvane
