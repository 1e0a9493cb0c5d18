#pragma once

#include <QLatin1StringView>
#include <QQuickAsyncImageProvider>
#include <QUrl>

#include <memory>

namespace sorvane {

class ThumbnailCache;

// Serves "image://collage/<file URL in base64url>" to the tiles of a collage wall from the
// thumbnail cache, so tiles decode off the GUI thread, at the size they ask for (their Image's
// sourceSize), at most four at a time, and a photo shown twice is decoded once.
class CollageImageProvider : public QQuickAsyncImageProvider {
public:
    // The name the app registers the provider under.
    static constexpr QLatin1StringView kProviderName {"collage"};
    // Asked for when a tile gives no size.
    static constexpr int kDefaultEdge = 512;

    explicit CollageImageProvider(std::shared_ptr<ThumbnailCache> cache);

    // The cache a host's walls share: two screens of walls show under a hundred photos at once,
    // each under 1 MB at tile size, so this holds every one on screen and the recent past.
    static constexpr qint64 kWallCacheBytes = qint64(96) * 1024 * 1024;
    static constexpr int kWallCacheCount = 300;
    static std::shared_ptr<ThumbnailCache> makeWallCache();

    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

    // The id of a file. Base64url survives the trip through a QML image URL untouched,
    // whatever the file name holds.
    static QString imageId(const QUrl &fileUrl);
    // The local file an id names; an empty URL for anything else.
    static QUrl parseId(const QString &id);

private:
    const std::shared_ptr<ThumbnailCache> m_cache;
};

} // namespace sorvane
