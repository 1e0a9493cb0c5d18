#pragma once

#include "bundle/BundleWriter.h"

#include <QStringList>

namespace sorvane {

// Finds the sources of an export: the listed files, then the media found in the
// listed folders, recursively, in a stable order (names sorted), so the same
// sources always give the same bundle. Hidden files and folders are skipped (the
// writer's staging folder among them), as are bundles (folders holding a
// bundle.json) and any folder already visited (symbolic link loops end there).
class BundleSourceScanner {
public:
    // `unnamedIn`, when given, receives the folder of each media file left out
    // because its name is not valid UTF-8 (once per file).
    static std::vector<BundleSourceFile> scan(const BundleWriteRequest &request, QStringList *unnamedIn = nullptr);

    // Lower-case extensions (no dot) of the photo formats an export accepts.
    static const QStringList &imageExtensions();
    // Whether a file name's extension makes it a source, photo or (when allowed) video.
    static bool isSupported(const QString &fileName, bool includeVideos, bool *isVideo = nullptr);
};

} // namespace sorvane
