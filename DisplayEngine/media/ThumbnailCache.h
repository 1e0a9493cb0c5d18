#pragma once

#include "media/DecodedThumbnail.h"
#include "media/ImageItem.h"
#include "media/LoadManager.h"
#include "media/LruCache.h"
#include "media/ThumbnailDecoding.h"
#include "media/ThumbnailResult.h"

#include <QFuture>
#include <QPromise>
#include <QSize>
#include <QThreadPool>
#include <QUrl>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace sorvane {

// Decoded thumbnails kept in a bounded memory cache, keyed by file URL. A missing one is decoded
// off the calling thread through this cache's own load slots, so a wall of tiles decodes at most
// four files at once, and a file already loading is never loaded a second time: later requests
// for it wait for the same decode.
//
// Results come back as futures, one per request. A cache hit returns a finished future at once;
// otherwise it finishes on a worker thread, and `future.then(contextObject, ...)` delivers it on
// the context object's thread (Qt posts the continuation there), which is what the tiles on the
// GUI thread want. Futures rather than callbacks because tests and non-GUI callers can simply
// wait on them; one per request because a Qt future holds only one continuation.
//
// Every member may be called from any thread.
class ThumbnailCache {
public:
    static constexpr qint64 kDefaultTotalCostLimit = qint64(200) * 1024 * 1024;
    static constexpr int kDefaultCountLimit = 500;

    explicit ThumbnailCache(std::shared_ptr<ThumbnailDecoding> decoder, qint64 totalCostLimit = kDefaultTotalCostLimit,
        int countLimit = kDefaultCountLimit);
    // Waits for the decodes that are running; requests still waiting for a slot finish with an
    // error instead of being decoded.
    ~ThumbnailCache();
    ThumbnailCache(const ThumbnailCache &) = delete;
    ThumbnailCache &operator=(const ThumbnailCache &) = delete;

    // The thumbnail of the file at `url`, fitted inside `maxPixelSize`. Cached and in-flight
    // thumbnails are shared by URL alone: a request joins whatever is cached or loading for the
    // file, whatever size that was asked at. Failures are not cached; the next request tries again.
    QFuture<ThumbnailResult> thumbnail(const QUrl &url, QSize maxPixelSize);
    QFuture<ThumbnailResult> thumbnail(const ImageItem &item, QSize maxPixelSize);

    // Forgets every cached thumbnail. Loads in flight still finish and are kept.
    void clear();

    int count() const;
    qint64 totalCost() const;

private:
    void load(const QUrl &url, QSize maxPixelSize);

    const std::shared_ptr<ThumbnailDecoding> m_decoder;
    mutable std::mutex m_mutex;
    LruCache<QUrl, std::shared_ptr<const DecodedThumbnail>> m_cache;
    // The requests waiting for each file being loaded.
    std::map<QUrl, std::vector<QPromise<ThumbnailResult>>> m_loading;
    std::atomic_bool m_closing = false;
    LoadManager m_loadManager;
    // Last, so that it is gone (its work done) before anything that work touches.
    QThreadPool m_pool;
};

} // namespace sorvane
