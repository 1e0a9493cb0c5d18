#include "TextFormat.h"

namespace sorvane::cli {

QString formatBytes(qint64 bytes)
{
    if (bytes < 1000)
        return bytes == 1 ? QStringLiteral("1 byte") : QStringLiteral("%1 bytes").arg(bytes);
    static const char *units[] = {"KB", "MB", "GB", "TB", "PB"};
    double value = double(bytes);
    int unit = -1;
    while (value >= 999.95 && unit < 4) {
        value /= 1000.0;
        ++unit;
    }
    return QStringLiteral("%1 %2").arg(value, 0, 'f', value < 10 ? 1 : 0).arg(QLatin1StringView(units[unit]));
}

} // namespace sorvane::cli
