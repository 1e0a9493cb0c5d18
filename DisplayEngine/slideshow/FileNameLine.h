#pragma once

#include "media/ImageItem.h"
#include "slideshow/FileDisplayFormat.h"

#include <QString>

namespace sorvane {

// The file-name line of a slideshow window: where the current item lives, written as the
// settings ask. Names come from strangers' disks, so the text is made safe to draw on one line.
class FileNameLine {
public:
    // "photo.jpg", "/media/usb/Trip/photo.jpg" or "Trip/photo.jpg". An item with no path
    // falls back to its display name.
    static QString text(const ImageItem &item, FileDisplayFormat format);
    // Control and bidirectional-override characters become U+FFFD, so a name can neither
    // break the line nor reorder what is drawn after it.
    static QString printable(const QString &text);
};

} // namespace sorvane
