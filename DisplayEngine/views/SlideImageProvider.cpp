#include "views/SlideImageProvider.h"

#include "bundle/BundleWireValues.h"
#include "views/SlideImageDecoder.h"
#include "views/ViewsLog.h"

#include <QDir>
#include <QFutureWatcher>
#include <QPromise>
#include <QUrl>

#include <memory>

namespace sorvane {

namespace {

// One request's answer. The decode runs on the provider's pool and reports through a future,
// so a response the view has already dropped is never touched from a worker thread.
class SlideImageResponse final : public QQuickImageResponse {
public:
    SlideImageResponse(QThreadPool &pool, const QString &id, const QSize &requestedSize)
    {
        const std::optional<SlideDecodeRequest> request = SlideImageProvider::parseId(id, requestedSize);
        if (!request) {
            qCWarning(lcViews) << "not a slide image id:" << id;
            m_error = QStringLiteral("not a slide image id: %1").arg(id);
            // Queued so whoever asked has connected to finished() by the time it arrives.
            QMetaObject::invokeMethod(
                this, [this] { Q_EMIT finished(); }, Qt::QueuedConnection);
            return;
        }

        QObject::connect(&m_watcher, &QFutureWatcher<SlideDecodeResult>::finished, this, [this] { takeResult(); });
        auto promise = std::make_shared<QPromise<SlideDecodeResult>>();
        m_watcher.setFuture(promise->future());
        promise->start();
        pool.start([promise, request = *request] {
            if (!promise->isCanceled()) {
                SlideDecodeResult result = SlideImageDecoder::decode(request);
                if (!result.ok())
                    qCWarning(lcViews) << "cannot show" << request.path << ":" << result.error;
                promise->addResult(std::move(result));
            }
            promise->finish();
        });
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return m_image.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(m_image);
    }

    QString errorString() const override { return m_error; }

    void cancel() override { m_watcher.future().cancel(); }

private:
    void takeResult()
    {
        const QFuture<SlideDecodeResult> future = m_watcher.future();
        if (future.isCanceled() || future.resultCount() == 0) {
            m_error = QStringLiteral("decoding was cancelled");
        } else {
            SlideDecodeResult result = future.result();
            m_error = result.error;
            if (m_error.isEmpty() && result.image.isNull())
                m_error = QStringLiteral("image could not be decoded");
            m_image = std::move(result.image);
        }
        Q_EMIT finished();
    }

    QFutureWatcher<SlideDecodeResult> m_watcher;
    QImage m_image;
    QString m_error;
};

} // namespace

SlideImageProvider::SlideImageProvider()
{
    // Two decodes at a time: the next slide and a neighbour; more only competes for memory.
    m_pool.setMaxThreadCount(2);
}

SlideImageProvider::~SlideImageProvider()
{
    m_pool.clear();
    m_pool.waitForDone();
}

QQuickImageResponse *SlideImageProvider::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    return new SlideImageResponse(m_pool, id, requestedSize);
}

QString SlideImageProvider::imageId(const QString &path, ImageScalingMode scaling, ImageFilter filter)
{
    // Everything but unreserved characters is encoded, '/' included, so the path is one URL
    // path segment that no URL normalisation can split or rewrite.
    return toWire(filter) + u'/' + toWire(scaling) + u'/' + QString::fromLatin1(QUrl::toPercentEncoding(path));
}

std::optional<SlideDecodeRequest> SlideImageProvider::parseId(const QString &id, QSize requested)
{
    const qsizetype afterFilter = id.indexOf(u'/');
    const qsizetype afterScaling = afterFilter < 0 ? -1 : id.indexOf(u'/', afterFilter + 1);
    if (afterScaling < 0)
        return std::nullopt;
    const std::optional<ImageFilter> filter = fromWire<ImageFilter>(id.left(afterFilter));
    const std::optional<ImageScalingMode> scaling
        = fromWire<ImageScalingMode>(id.mid(afterFilter + 1, afterScaling - afterFilter - 1));
    const QString encodedPath = id.mid(afterScaling + 1);
    if (!filter || !scaling || encodedPath.contains(u'/'))
        return std::nullopt;

    // QML hands the id over with some escapes already decoded (spaces, non-ASCII letters) and
    // others kept; decoding the rest of the escapes gives the same path either way.
    const QString path = QUrl::fromPercentEncoding(encodedPath.toUtf8());
    if (path.isEmpty() || !QDir::isAbsolutePath(path))
        return std::nullopt;
    return SlideDecodeRequest {path, requested, *scaling, *filter};
}

} // namespace sorvane
