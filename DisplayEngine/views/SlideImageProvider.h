#pragma once

#include "views/SlideDecodeRequest.h"

#include <QLatin1StringView>
#include <QQuickAsyncImageProvider>
#include <QSize>
#include <QString>
#include <QThreadPool>

#include <optional>

namespace sorvane {

// Serves "image://slide/<id>" to QML Image items, decoding on its own threads with
// SlideImageDecoder. An id is "<filter>/<scaling>/<percent-encoded absolute path>", with the
// bundle's wire values for filter and scaling; the Image's sourceSize is the target size.
// A failed decode finishes with the decoder's error, which puts the Image in Image.Error.
class SlideImageProvider : public QQuickAsyncImageProvider {
public:
    // The name the app registers the provider under.
    static constexpr QLatin1StringView kProviderName {"slide"};

    SlideImageProvider();
    ~SlideImageProvider() override;

    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

    static QString imageId(const QString &path, ImageScalingMode scaling, ImageFilter filter);
    // The request an id stands for, with `requested` as its target; nothing for an id not made
    // by imageId (unknown wire values, raw slashes in the path, a relative path).
    static std::optional<SlideDecodeRequest> parseId(const QString &id, QSize requested);

private:
    QThreadPool m_pool;
};

} // namespace sorvane
