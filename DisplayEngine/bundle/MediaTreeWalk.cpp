#include "bundle/MediaTreeWalk.h"

#include "bundle/BundleFormat.h"
#include "bundle/BundleSourceScanner.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

namespace sorvane {

namespace {

// A bundle's files are derivatives of photos; taking them again would only copy copies
// (and re-exporting into the same place would find its own output).
bool isBundle(const QString &folder)
{
    return QFileInfo(folder + QLatin1Char('/') + BundleFormat::manifestFileName).isFile();
}

} // namespace

MediaTreeWalk::MediaTreeWalk(bool includeVideos, Visit visit)
    : m_includeVideos(includeVideos), m_visit(std::move(visit))
{
}

void MediaTreeWalk::addPickedFile(const QFileInfo &info)
{
    if (info.isDir())
        addFolder(info.filePath());
    else
        addFile(info, info.absolutePath(), true);
}

void MediaTreeWalk::addFolder(const QString &path)
{
    const QFileInfo info(path);
    m_canonicalRoot = info.canonicalFilePath();
    walkFolder(path, info.absoluteFilePath());
}

bool MediaTreeWalk::isOutside(const QString &canonical) const
{
    if (!m_stayInside || canonical == m_canonicalRoot)
        return false;
    const QString prefix
        = m_canonicalRoot.endsWith(QLatin1Char('/')) ? m_canonicalRoot : m_canonicalRoot + QLatin1Char('/');
    return !canonical.startsWith(prefix);
}

void MediaTreeWalk::addFile(const QFileInfo &info, const QString &root, bool picked)
{
    if (m_stopped)
        return;
    bool isVideo = false;
    // Only regular files (or links to them) are found in folders: a pipe named .jpg would
    // block whoever reads it. A picked one, like a missing one, stays to be reported as
    // unreadable (nothing ever opens it).
    if (info.exists() && !info.isFile() && !picked)
        return;
    if (!BundleSourceScanner::isSupported(info.fileName(), m_includeVideos, &isVideo))
        return;
    // A file listed twice, or reached twice through links, is one file.
    const QString key = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    if (m_seenFiles.contains(key) || (!picked && isOutside(key)))
        return;
    m_seenFiles.insert(key);
    if (!m_visit(info, isVideo, root))
        m_stopped = true;
}

void MediaTreeWalk::walkFolder(const QString &path, const QString &root)
{
    if (m_stop && m_stop())
        m_stopped = true;
    if (m_stopped)
        return;
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    if (canonical.isEmpty() || m_seenFolders.contains(canonical) || isOutside(canonical) || isBundle(canonical))
        return;
    m_seenFolders.insert(canonical);
    if (!info.isReadable() || !info.isExecutable()) {
        ++m_unreadableFolders;
        return;
    }
    // Names only, not a QFileInfo per entry as QDir's listing keeps: a folder of a hundred
    // thousand files would hold tens of megabytes of file details while it is walked.
    struct Entry {
        QString name;
        bool isDir;
    };
    std::vector<Entry> entries;
    QDirIterator listing(path, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    while (listing.hasNext()) {
        const QFileInfo entry = listing.nextFileInfo();
        entries.push_back({entry.fileName(), entry.isDir()});
    }
    // Files before folders, each in name order, as QDir sorts them.
    std::sort(entries.begin(), entries.end(),
        [](const Entry &a, const Entry &b) { return a.isDir != b.isDir ? b.isDir : a.name.compare(b.name) < 0; });
    const QDir folder(path);
    for (const Entry &entry : entries) {
        if (m_stopped)
            return;
        const QString entryPath = folder.absoluteFilePath(entry.name);
        if (entry.isDir)
            walkFolder(entryPath, root);
        else
            addFile(QFileInfo(entryPath), root, false);
    }
    if (m_noteUnnamed)
        findUnnamedFiles(path);
}

void MediaTreeWalk::findUnnamedFiles(const QString &folder)
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
        if (BundleSourceScanner::isSupported(QString::fromUtf8(name), m_includeVideos))
            m_unnamedIn.append(folder);
    }
    closedir(dir);
}

} // namespace sorvane
