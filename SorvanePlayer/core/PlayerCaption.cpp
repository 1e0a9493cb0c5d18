#include "core/PlayerCaption.h"

#include <QStringList>

namespace sorvane {

QString PlayerCaption::text(
    const std::optional<QString> &sourceName, const QString &shownPath, BundleFileDisplayFormat format)
{
    if (format == BundleFileDisplayFormat::absolutePath)
        return shownPath;
    const QString name = sourceName.value_or(QString()).trimmed();
    if (name.isEmpty())
        return {};
    // Names are written with forward slashes; a Windows-made bundle may hold backslashes.
    QStringList parts
        = QString(name).replace(QLatin1Char('\\'), QLatin1Char('/')).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return {};
    switch (format) {
    case BundleFileDisplayFormat::filenameOnly:
        return parts.last();
    case BundleFileDisplayFormat::relativePath:
        return parts.join(QLatin1Char('/'));
    case BundleFileDisplayFormat::parentPlusFilename:
        return parts.size() < 2 ? parts.last() : parts[parts.size() - 2] + QLatin1Char('/') + parts.last();
    case BundleFileDisplayFormat::absolutePath:
        break;
    }
    return parts.last();
}

} // namespace sorvane
