#include "platform/LaunchClock.h"

#include <QElapsedTimer>
#include <QFile>

#include <ctime>
#include <unistd.h>

namespace sorvane {

namespace {
// Fallback when /proc cannot tell: the first use, at the top of main().
QElapsedTimer &sinceFirstUse()
{
    static QElapsedTimer timer = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return timer;
}

// The process's start in clock ticks since boot: field 22 of /proc/self/stat,
// counted after the command name, which may itself hold spaces and parentheses.
qint64 startTicks()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray line = stat.read(4096);
    const qsizetype close = line.lastIndexOf(')');
    if (close < 0)
        return -1;
    const QList<QByteArray> fields = line.mid(close + 2).split(' ');
    // Fields after the name start at field 3 (state); starttime is field 22.
    if (fields.size() < 20)
        return -1;
    bool ok = false;
    const qint64 ticks = fields[19].toLongLong(&ok);
    return ok ? ticks : -1;
}
} // namespace

qint64 LaunchClock::millisecondsSinceProcessStart()
{
    sinceFirstUse();
    static const qint64 started = startTicks();
    const long hz = sysconf(_SC_CLK_TCK);
    timespec now {};
    if (started < 0 || hz <= 0 || clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return sinceFirstUse().elapsed();
    const qint64 nowMs = qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
    return nowMs - started * 1000 / hz;
}

} // namespace sorvane
