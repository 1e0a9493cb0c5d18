#include "views/CollageImageProvider.h"

#include "media/ThumbnailCache.h"
#include "views/QtDecodedThumbnail.h"
#include "views/QtThumbnailDecoder.h"
#include "views/ViewsLog.h"

#include <QFutureWatcher>

namespace sorvane {

namespace {

// One tile's request. The cache finishes the future on a worker thread; the watcher hands the
// result to this object on the GUI thread, and a response the view dropped is never touched.
class CollageImageResponse final : public QQuickImageResponse {
public:
    explicit CollageImageResponse(const QString &error) : m_error(error)
    {
        // Queued so whoever asked has connected to finished() by the time it arrives.
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT finished(); }, Qt::QueuedConnection);
    }

    explicit CollageImageResponse(const QFuture<ThumbnailResult> &future)
    {
        QObject::connect(&m_watcher, &QFutureWatcher<ThumbnailResult>::finished, this, [this] { takeResult(); });
        m_watcher.setFuture(future);
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return m_image.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(m_image);
    }

    QString errorString() const override { return m_error; }

private:
    void takeResult()
    {
        const QFuture<ThumbnailResult> future = m_watcher.future();
        if (future.isCanceled() || future.resultCount() == 0) {
            m_error = QStringLiteral("the thumbnail was not loaded");
        } else {
            const ThumbnailResult result = future.result();
            const auto *decoded = dynamic_cast<const QtDecodedThumbnail *>(result.thumbnail.get());
            if (decoded)
                m_image = decoded->image();
            else
                m_error = result.error.isEmpty() ? QStringLiteral("the thumbnail could not be decoded") : result.error;
        }
        Q_EMIT finished();
    }

    QFutureWatcher<ThumbnailResult> m_watcher;
    QImage m_image;
    QString m_error;
};

} // namespace

CollageImageProvider::CollageImageProvider(std::shared_ptr<ThumbnailCache> cache) : m_cache(std::move(cache)) { }

std::shared_ptr<ThumbnailCache> CollageImageProvider::makeWallCache()
{
    return std::make_shared<ThumbnailCache>(std::make_shared<QtThumbnailDecoder>(), kWallCacheBytes, kWallCacheCount);
}

QQuickImageResponse *CollageImageProvider::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    const QUrl url = parseId(id);
    if (url.isEmpty() || !m_cache) {
        qCWarning(lcViews) << "not a collage image id:" << id;
        return new CollageImageResponse(QStringLiteral("not a collage image id: %1").arg(id));
    }
    const QSize size(requestedSize.width() > 0 ? requestedSize.width() : kDefaultEdge,
        requestedSize.height() > 0 ? requestedSize.height() : kDefaultEdge);
    return new CollageImageResponse(m_cache->thumbnail(url, size));
}

QString CollageImageProvider::imageId(const QUrl &fileUrl)
{
    return QString::fromLatin1(
        fileUrl.toEncoded().toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QUrl CollageImageProvider::parseId(const QString &id)
{
    const auto decoded = QByteArray::fromBase64Encoding(
        id.toLatin1(), QByteArray::Base64UrlEncoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return {};
    const QUrl url = QUrl::fromEncoded(*decoded, QUrl::StrictMode);
    return url.isValid() && url.isLocalFile() ? url : QUrl();
}

} // namespace sorvane
