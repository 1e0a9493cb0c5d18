#include "views/BrandLogoCache.h"

#include <QImageReader>
#include <QUrl>

namespace sorvane {

BrandLogoCache::BrandLogoCache() : QQuickImageProvider(QQuickImageProvider::Image) { }

std::optional<QSize> BrandLogoCache::decode(const QString &path) const
{
    QMutexLocker lock(&m_mutex);
    if (const auto found = m_images.constFind(path); found != m_images.cend())
        return found->size();
    QImageReader reader(path);
    reader.setAutoTransform(true);
    reader.setAllocationLimit(64);
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || qint64(size.width()) * size.height() > (qint64(1) << 26))
        return std::nullopt;
    // A logo is drawn a few percent of the screen wide; anything bigger is wasted memory.
    if (size.width() > maximumEdge || size.height() > maximumEdge)
        reader.setScaledSize(size.scaled(maximumEdge, maximumEdge, Qt::KeepAspectRatio));
    const QImage image = reader.read();
    if (image.isNull() || image.width() <= 0 || image.height() <= 0)
        return std::nullopt;
    m_images.insert(path, image);
    return image.size();
}

QImage BrandLogoCache::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString path = QUrl::fromPercentEncoding(id.toUtf8());
    QImage image;
    {
        QMutexLocker lock(&m_mutex);
        image = m_images.value(path);
    }
    // Only logos that passed decode() are served; nothing else is read from disk here.
    if (!image.isNull() && requestedSize.isValid() && !requestedSize.isEmpty())
        image = image.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (size)
        *size = image.size();
    return image;
}

QUrl BrandLogoCache::urlFor(const QString &path)
{
    return QUrl(QStringLiteral("image://%1/").arg(kProviderName) + QString::fromLatin1(QUrl::toPercentEncoding(path)));
}

} // namespace sorvane
