#pragma once

#include "media/ImageItem.h"

#include <QList>
#include <QUrl>

namespace sorvane::collagetest {

inline QList<ImageItem> makePool(int count)
{
    QList<ImageItem> pool;
    for (int i = 0; i < count; ++i)
        pool.append(ImageItem(QUrl::fromLocalFile(QStringLiteral("/photos/%1.jpg").arg(i))));
    return pool;
}

} // namespace sorvane::collagetest
