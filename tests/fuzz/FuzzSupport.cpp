#include "FuzzSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace sorvane::fuzz {

namespace {

void messageHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
}

} // namespace

void fail(const char *what, const QByteArray &detail)
{
    std::fprintf(stderr, "fuzz target: invariant violated: %s\n", what);
    if (!detail.isEmpty())
        std::fprintf(stderr, "%.*s\n", int(qMin<qsizetype>(detail.size(), 4000)), detail.constData());
    std::abort();
}

void quietMessages()
{
    static const bool installed = (qInstallMessageHandler(messageHandler), true);
    Q_UNUSED(installed);
}

QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
}

void writeFile(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(contents) != contents.size())
        qFatal("fuzz target: cannot write %s", qUtf8Printable(path));
}

bool utf8Representable(const QJsonValue &value)
{
    if (value.isString())
        return value.toString().isValidUtf16();
    if (value.isArray()) {
        for (const QJsonValue &entry : value.toArray()) {
            if (!utf8Representable(entry))
                return false;
        }
    }
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (!it.key().isValidUtf16() || !utf8Representable(it.value()))
                return false;
        }
    }
    return true;
}

} // namespace sorvane::fuzz
