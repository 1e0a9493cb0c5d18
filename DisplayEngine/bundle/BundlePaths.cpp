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
    if (trimmed.contains(QLatin1Char(':')))
        return false;
    // Components are judged on the trimmed text too, so " ../x" cannot pass as a
    // folder named " .." once a consumer trims it.
    for (const QStringView component : QStringTokenizer(trimmed, QLatin1Char('/'))) {
        if (component == QLatin1StringView(".."))
            return false;
    }
    return true;
}

} // namespace sorvane
