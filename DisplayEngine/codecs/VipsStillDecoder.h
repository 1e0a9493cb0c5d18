#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <functional>

namespace sorvane {

// A photo decoded by libvips for display: 8-bit RGBA rows, upright, or why not.
struct VipsStill {
    QByteArray rgba;
    QSize size;
    // The picture's full size, upright; invalid when not even the header could be read.
    QSize sourceSize;
    QString error;
};

// Decodes the photo formats people have that Qt reads no plugin for here: HEIF (HEIC,
// AVIF) and JPEG XL. The slide views turn to it when Qt does not recognise a file.
class VipsStillDecoder {
public:
    // Decoding a bigger picture would take more memory than one slide may: 201 MB as RGB.
    static constexpr qint64 kMaxSourcePixels = qint64(1) << 26;

    // Whether the file is one of those formats, told by its first bytes (ForeignStillFormat)
    // and then by the loader libvips picks.
    static bool handles(const QString &path);
    // Shrunk on load (never enlarged) to the size `sizeFor` gives for the upright source size.
    static VipsStill decode(const QString &path, const std::function<QSize(QSize upright)> &sizeFor);
};

} // namespace sorvane
