#include "views/CollageSource.h"

#include "views/CollageImageProvider.h"

namespace sorvane {

CollageSource::CollageSource(QObject *parent) : QObject(parent) { }

QString CollageSource::imageUrl(const QUrl &fileUrl) const
{
    if (!fileUrl.isLocalFile())
        return {};
    return QStringLiteral("image://%1/%2")
        .arg(CollageImageProvider::kProviderName, CollageImageProvider::imageId(fileUrl));
}

} // namespace sorvane
