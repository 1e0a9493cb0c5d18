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

QString formatDuration(double seconds)
{
    if (!(seconds > 0))
        return QStringLiteral("0 s");
    if (seconds < 0.095)
        return QStringLiteral("%1 ms").arg(qint64(seconds * 1000 + 0.5));
    if (seconds < 9.95)
        return QStringLiteral("%1 s").arg(seconds, 0, 'f', 1);
    const qint64 whole = qint64(seconds + 0.5);
    if (whole < 60)
        return QStringLiteral("%1 s").arg(whole);
    if (whole < 3600)
        return QStringLiteral("%1 min %2 s").arg(whole / 60).arg(whole % 60);
    return QStringLiteral("%1 h %2 min").arg(whole / 3600).arg(whole % 3600 / 60);
}

} // namespace sorvane::cli
