#include "media/ThumbnailCache.h"

#include <utility>

namespace sorvane {

namespace {

QFuture<ThumbnailResult> ready(ThumbnailResult result)
{
    return QtFuture::makeReadyFuture(std::move(result));
}

ThumbnailResult failure(const char *error)
{
    return ThumbnailResult {nullptr, QString::fromLatin1(error)};
}

} // namespace

ThumbnailCache::ThumbnailCache(std::shared_ptr<ThumbnailDecoding> decoder, qint64 totalCostLimit, int countLimit)
    : m_decoder(std::move(decoder)), m_cache(totalCostLimit, countLimit)
{
    // The slots are the limit. Spare threads let a load that was just granted a slot start while
    // the thread that released it is still winding down.
    m_pool.setMaxThreadCount(2 * m_loadManager.maxConcurrentLoads());
}

ThumbnailCache::~ThumbnailCache()
{
    // Every queued request holds a slot-to-be that only a running load can hand on, so waiting
    // for the pool also drains the queue; with m_closing set the queued ones skip decoding.
    m_closing = true;
    m_pool.waitForDone();
}

QFuture<ThumbnailResult> ThumbnailCache::thumbnail(const ImageItem &item, QSize maxPixelSize)
{
    return thumbnail(item.url(), maxPixelSize);
}

QFuture<ThumbnailResult> ThumbnailCache::thumbnail(const QUrl &url, QSize maxPixelSize)
{
    // An unbounded side would decode the whole picture, which is what thumbnails exist to avoid.
    if (maxPixelSize.width() <= 0 || maxPixelSize.height() <= 0)
        return ready(failure("thumbnail size must be positive"));

    QFuture<ThumbnailResult> future;
    {
        std::lock_guard lock(m_mutex);
        if (std::optional<std::shared_ptr<const DecodedThumbnail>> cached = m_cache.object(url))
            return ready(ThumbnailResult {std::move(*cached), {}});
        std::vector<QPromise<ThumbnailResult>> &waiting = m_loading[url];
        const bool alreadyLoading = !waiting.empty();
        QPromise<ThumbnailResult> &promise = waiting.emplace_back();
        promise.start();
        future = promise.future();
        if (alreadyLoading)
            return future;
    }
    m_loadManager.requestSlot(
        [this, url, maxPixelSize] { m_pool.start([this, url, maxPixelSize] { load(url, maxPixelSize); }); });
    return future;
}

void ThumbnailCache::load(const QUrl &url, QSize maxPixelSize)
{
    ThumbnailResult result = m_closing ? failure("thumbnail cache is closing") : m_decoder->decode(url, maxPixelSize);
    if (!result.ok() && result.error.isEmpty())
        result.error = QStringLiteral("thumbnail could not be decoded");
    m_loadManager.releaseSlot();

    std::vector<QPromise<ThumbnailResult>> waiting;
    {
        // Stored before the file leaves m_loading, under one lock, so that a request arriving
        // meanwhile finds one or the other and never starts a second decode.
        std::lock_guard lock(m_mutex);
        if (result.ok())
            m_cache.insert(url, result.thumbnail, result.thumbnail->cost());
        const auto loading = m_loading.find(url);
        if (loading != m_loading.end()) {
            waiting = std::move(loading->second);
            m_loading.erase(loading);
        }
    }
    for (QPromise<ThumbnailResult> &promise : waiting) {
        promise.addResult(result);
        promise.finish();
    }
}

void ThumbnailCache::clear()
{
    std::lock_guard lock(m_mutex);
    m_cache.clear();
}

int ThumbnailCache::count() const
{
    std::lock_guard lock(m_mutex);
    return int(m_cache.count());
}

qint64 ThumbnailCache::totalCost() const
{
    std::lock_guard lock(m_mutex);
    return m_cache.totalCost();
}

} // namespace sorvane
