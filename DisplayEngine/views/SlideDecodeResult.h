#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace sorvane {

// A decoded slide, or why it could not be decoded.
struct SlideDecodeResult {
    QImage image;
    // Why decoding failed; empty on success.
    QString error;
    // The picture's full size, upright (after its EXIF orientation), whatever size it was
    // decoded at; invalid when not even the header could be read.
    QSize sourceSize;

    bool ok() const { return error.isEmpty() && !image.isNull(); }
};

} // namespace sorvane
