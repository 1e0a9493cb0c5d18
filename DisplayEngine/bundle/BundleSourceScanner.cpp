#include "bundle/BundleSourceScanner.h"

#include "bundle/BundleFormat.h"
#include "media/VideoExtensions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <dirent.h>
#include <sys/stat.h>

namespace sorvane {

namespace {

class Walk {
public:
    explicit Walk(const BundleWriteRequest &request) : m_request(request) { }

    void addFile(const QFileInfo &info, bool named = false)
    {
        bool isVideo = false;
        // Only regular files (or links to them) are found in folders: a pipe named .jpg would
        // block the export. One named by the user, like a missing one, stays to be reported
        // as unreadable (nothing ever opens it).
        if (info.exists() && !info.isFile() && !named)
            return;
        if (!BundleSourceScanner::isSupported(info.fileName(), m_request.includeVideos, &isVideo))
            return;
        // A file listed twice, or reached twice through links, is one source.
        const QString key = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
        if (m_seenFiles.contains(key))
            return;
        m_seenFiles.insert(key);
        m_sources.push_back({info.absoluteFilePath(), info.size(), isVideo});
    }

    void addFolder(const QString &path)
    {
        const QFileInfo info(path);
        const QString canonical = info.canonicalFilePath();
        if (canonical.isEmpty() || m_seenFolders.contains(canonical) || isBundle(canonical))
            return;
        m_seenFolders.insert(canonical);
        const QDir dir(path);
        const QFileInfoList entries
            = dir.entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::DirsLast);
        for (const QFileInfo &entry : entries) {
            if (entry.isDir())
                addFolder(entry.absoluteFilePath());
            else
                addFile(entry);
        }
        noteUnnamedFiles(path);
    }

    std::vector<BundleSourceFile> take() { return std::move(m_sources); }
    QStringList takeUnnamed() { return std::move(m_unnamedIn); }

private:
    // A bundle's files are derivatives of photos; exporting them again would
    // only copy copies (and re-exporting into the same place would find its own output).
    static bool isBundle(const QString &folder)
    {
        return QFileInfo(folder + QLatin1Char('/') + BundleFormat::manifestFileName).isFile();
    }

    // The toolkit's listing cannot spell a name that is not UTF-8, so such a file
    // would vanish from the export unnoticed; the raw listing finds it to be reported.
    void noteUnnamedFiles(const QString &folder)
    {
        const QByteArray raw = QFile::encodeName(folder);
        DIR *dir = opendir(raw.constData());
        if (!dir)
            return;
        while (const dirent *entry = readdir(dir)) {
            const QByteArray name(entry->d_name);
            struct stat info { };
            if (name.isValidUtf8() || stat((raw + '/' + name).constData(), &info) != 0 || !S_ISREG(info.st_mode))
                continue;
            if (BundleSourceScanner::isSupported(QString::fromUtf8(name), m_request.includeVideos))
                m_unnamedIn.append(folder);
        }
        closedir(dir);
    }

    const BundleWriteRequest &m_request;
    QSet<QString> m_seenFiles;
    QSet<QString> m_seenFolders;
    std::vector<BundleSourceFile> m_sources;
    QStringList m_unnamedIn;
};

} // namespace

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
    Walk walk(request);
    for (const QString &file : request.sourceFiles) {
        const QFileInfo info(file);
        if (info.isDir())
            walk.addFolder(file);
        else
            walk.addFile(info, true);
    }
    for (const QString &folder : request.sourceFolders)
        walk.addFolder(folder);
    if (unnamedIn)
        *unnamedIn = walk.takeUnnamed();
    return walk.take();
}

} // namespace sorvane
