#include "bundle/BundleSourceScanner.h"

#include "bundle/MediaTreeWalk.h"
#include "media/VideoExtensions.h"

#include <QFileInfo>

namespace sorvane {

const QStringList &BundleSourceScanner::imageExtensions()
{
    static const QStringList extensions {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jpe"),
        QStringLiteral("png"), QStringLiteral("gif"), QStringLiteral("webp"), QStringLiteral("heic"),
        QStringLiteral("heif"), QStringLiteral("avif"), QStringLiteral("tif"), QStringLiteral("tiff"),
        QStringLiteral("jxl"), QStringLiteral("bmp")};
    return extensions;
}

bool BundleSourceScanner::isSupported(const QString &fileName, bool includeVideos, bool *isVideo)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    const bool video = VideoExtensions::tierFor(suffix).has_value();
    if (isVideo)
        *isVideo = video;
    if (fileName.startsWith(QLatin1Char('.')))
        return false;
    return video ? includeVideos : imageExtensions().contains(suffix);
}

std::vector<BundleSourceFile> BundleSourceScanner::scan(const BundleWriteRequest &request, QStringList *unnamedIn)
{
    std::vector<BundleSourceFile> sources;
    MediaTreeWalk walk(request.includeVideos, [&sources](const QFileInfo &file, bool isVideo, const QString &) {
        sources.push_back({file.absoluteFilePath(), file.size(), isVideo});
        return true;
    });
    walk.noteUnnamedFiles(unnamedIn != nullptr);
    for (const QString &file : request.sourceFiles)
        walk.addPickedFile(QFileInfo(file));
    for (const QString &folder : request.sourceFolders)
        walk.addFolder(folder);
    if (unnamedIn)
        *unnamedIn = walk.takeUnnamed();
    return sources;
}

} // namespace sorvane
