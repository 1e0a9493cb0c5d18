#pragma once

#include "media/ImageItem.h"

#include <QList>
#include <QSet>
#include <QUrl>
#include <QUuid>

namespace sorvane::collagetest {

inline QList<ImageItem> makePool(int count)
{
    QList<ImageItem> pool;
    for (int i = 0; i < count; ++i)
        pool.append(ImageItem(QUrl::fromLocalFile(QStringLiteral("/photos/%1.jpg").arg(i))));
    return pool;
}

inline QSet<QUuid> idsOf(const QList<ImageItem> &items)
{
    QSet<QUuid> ids;
    for (const ImageItem &item : items)
        ids.insert(item.id());
    return ids;
}

} // namespace sorvane::collagetest
