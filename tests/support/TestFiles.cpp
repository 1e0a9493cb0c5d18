#include "support/TestFiles.h"

#include <QFile>
#include <QtEndian>

#include <sys/resource.h>
#include <zlib.h>

namespace sorvane::test {

namespace {

QByteArray pngChunk(const char type[4], const QByteArray &data)
{
    const QByteArray typeAndData = QByteArray(type, 4) + data;
    QByteArray length(4, Qt::Uninitialized), crc(4, Qt::Uninitialized);
    qToBigEndian<quint32>(quint32(data.size()), length.data());
    qToBigEndian<quint32>(
        quint32(crc32(0, reinterpret_cast<const Bytef *>(typeAndData.constData()), uInt(typeAndData.size()))),
        crc.data());
    return length + typeAndData + crc;
}

} // namespace

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeAll(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray pngClaiming(quint32 width, quint32 height)
{
    QByteArray ihdr(13, '\0');
    qToBigEndian<quint32>(width, ihdr.data());
    qToBigEndian<quint32>(height, ihdr.data() + 4);
    ihdr[8] = 8; // bit depth
    ihdr[9] = 2; // colour type RGB
    const QByteArray rows(4 * (1 + qsizetype(width) * 3), '\0');
    const QByteArray zlibStream = qCompress(rows).mid(4); // qCompress prefixes a length
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", ihdr) + pngChunk("IDAT", zlibStream)
        + pngChunk("IEND", {});
}

qint64 peakResidentBytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024; // kilobytes on Linux
}

} // namespace sorvane::test
