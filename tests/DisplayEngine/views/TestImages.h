#pragma once

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageWriter>
#include <QSize>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>

namespace sorvane::test {

// A test with a folder of its own for the files it writes.
class FileTest : public ::testing::Test {
protected:
    QString write(const QString &name, const QByteArray &bytes)
    {
        const QString path = dir.filePath(name);
        EXPECT_TRUE(writeAll(path, bytes)) << path.toStdString();
        return path;
    }

    QTemporaryDir dir;
};

// A picture whose left half is red and right half blue, so a turn shows in where red ends up.
inline QImage halves(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::fill(line, line + size.width() / 2, qRgb(255, 0, 0));
    }
    return image;
}

// The image in `format`; "progressive" is a progressive JPEG.
inline QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool progressive = qstrcmp(format, "progressive") == 0;
    QImageWriter writer(&buffer, progressive ? "jpeg" : format);
    writer.setQuality(95);
    writer.setProgressiveScanWrite(progressive);
    EXPECT_TRUE(writer.write(image)) << format << ": " << writer.errorString().toStdString();
    return bytes;
}

// The JPEG with its frame header claiming `size`: a few hundred bytes for any size.
inline QByteArray claimingJpegSize(QByteArray jpeg, QSize size)
{
    for (qsizetype i = 2; i + 9 < jpeg.size(); ++i) {
        const uchar marker = uchar(jpeg[i + 1]);
        if (uchar(jpeg[i]) == 0xFF && (marker == 0xC0 || marker == 0xC2)) {
            qToBigEndian<quint16>(quint16(size.height()), jpeg.data() + i + 5);
            qToBigEndian<quint16>(quint16(size.width()), jpeg.data() + i + 7);
            return jpeg;
        }
    }
    ADD_FAILURE() << "no frame header";
    return jpeg;
}

// The JPEG with an EXIF APP1 segment holding only the orientation tag, right after SOI.
inline QByteArray withExifOrientation(const QByteArray &jpeg, quint16 orientation)
{
    QByteArray tiff("MM\0\x2A\0\0\0\x08", 8); // big-endian header, first IFD at offset 8
    tiff += QByteArray("\0\x01", 2); // one entry
    QByteArray entry(12, '\0');
    qToBigEndian<quint16>(0x0112, entry.data()); // Orientation
    qToBigEndian<quint16>(3, entry.data() + 2); // SHORT
    qToBigEndian<quint32>(1, entry.data() + 4); // one value
    qToBigEndian<quint16>(orientation, entry.data() + 8);
    tiff += entry + QByteArray(4, '\0'); // no next IFD
    const QByteArray payload = QByteArray("Exif\0\0", 6) + tiff;
    QByteArray segment("\xFF\xE1", 2);
    segment += QByteArray(2, '\0');
    qToBigEndian<quint16>(quint16(payload.size() + 2), segment.data() + 2);
    segment += payload;
    return jpeg.left(2) + segment + jpeg.mid(2);
}

} // namespace sorvane::test
