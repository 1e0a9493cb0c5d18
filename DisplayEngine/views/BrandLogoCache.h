#pragma once

#include "media/BrandOverlayImageDecoding.h"

#include <QHash>
#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>

namespace sorvane {

// Decodes brand logos once and serves them to the views as "image://brand/<path>",
// so a slide change never decodes the logo again. Logos come from the bundle and
// are untrusted: decoding is bounded like any slide.
class BrandLogoCache final : public QQuickImageProvider, public BrandOverlayImageDecoding {
public:
    static constexpr QLatin1StringView kProviderName {"brand"};
    static constexpr int maximumEdge = 4096;

    BrandLogoCache();

    std::optional<QSize> decode(const QString &path) const override;
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
    static QUrl urlFor(const QString &path);

private:
    mutable QMutex m_mutex;
    mutable QHash<QString, QImage> m_images;
};

} // namespace sorvane
