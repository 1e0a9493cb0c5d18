#pragma once

#include <QString>

namespace sorvane {

// The photo formats people have that only a codec library reads here (HEIF/HEIC and AVIF,
// JPEG XL), told by a regular file's first bytes: cheap enough to ask before deciding to
// load that library at all. A FIFO or device is never opened.
class ForeignStillFormat {
public:
    static bool sniff(const QString &path);
};

} // namespace sorvane
