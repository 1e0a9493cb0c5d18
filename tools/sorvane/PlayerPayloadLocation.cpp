#include "PlayerPayloadLocation.h"

#include <QDir>

namespace sorvane::cli {

QString PlayerPayloadLocation::entryFileName()
{
    return QStringLiteral("Slidora");
}

QStringList PlayerPayloadLocation::candidates(const QString &executableFolder)
{
    if (executableFolder.trimmed().isEmpty())
        return {};
    const QDir bin(executableFolder);
    return {QDir::cleanPath(bin.filePath(QStringLiteral("../payload"))),
        QDir::cleanPath(bin.filePath(QStringLiteral("../lib/sorvane/player")))};
}

} // namespace sorvane::cli
