#pragma once

#include <QMetaType>
#include <QtGlobal>

namespace sorvane {

// What a folder scan found and what it had to leave out.
struct MediaFolderScanCounts {
    qint64 images = 0;
    qint64 videos = 0;
    // Folders that could not be listed and media files that could not be read.
    qint64 unreadableFolders = 0;
    qint64 unreadableFiles = 0;
    // True when the scan was cancelled before it had seen everything.
    bool cancelled = false;

    friend bool operator==(const MediaFolderScanCounts &, const MediaFolderScanCounts &) = default;
};

} // namespace sorvane

Q_DECLARE_METATYPE(sorvane::MediaFolderScanCounts)
