#include "bundle/BundlePaths.h"

#include <QStringTokenizer>

namespace sorvane {

bool isSafeBundleRelativePath(const QString &path)
{
    const QString trimmed = path.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (trimmed.startsWith(QLatin1Char('/')) || trimmed.startsWith(QLatin1Char('\\')))
        return false;
    if (path.contains(QLatin1Char(':')))
        return false;
    for (const QStringView component : QStringTokenizer(path, QLatin1Char('/'))) {
        if (component == QLatin1StringView(".."))
            return false;
    }
    return true;
}

} // namespace sorvane
