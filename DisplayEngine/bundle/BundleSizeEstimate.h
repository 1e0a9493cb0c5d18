#pragma once

#include <QtGlobal>

namespace sorvane {

// What an export is expected to write, shown before it starts.
struct BundleSizeEstimate {
    qint64 imageCount = 0;
    qint64 videoCount = 0;
    qint64 sourceBytes = 0;
    qint64 derivativeBytes = 0;
    qint64 videoBytes = 0;
    qint64 originalBytes = 0;
    qint64 playerBytes = 0;
    bool includesOriginals = false;

    qint64 totalBytes() const { return derivativeBytes + videoBytes + originalBytes + playerBytes; }
};

} // namespace sorvane
