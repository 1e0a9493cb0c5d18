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

// One entry of a folder being walked, with what its place in the order depends on.
struct Entry {
    QString name;
    bool isDir;

    // Files before folders, each by name, compared by code unit (not by locale); as a heap's
    // ordering, so the top is the entry that comes first.
    static bool comesAfter(const Entry &a, const Entry &b) { return a.isDir != b.isDir ? a.isDir : b.name < a.name; }
};

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

void MediaTreeWalk::addFile(const QFileInfo &info, const QString &root, bool picked, const QString &canonicalFolder)
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
    // A plain file listed in a folder whose real path is known is that path plus its name:
    // resolving it again would read every link of the path once per file.
    const QString key = !canonicalFolder.isEmpty() && !info.isSymLink() ? canonicalFolder
            + (canonicalFolder.endsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) + info.fileName()
        : info.exists() ? info.canonicalFilePath()
                        : info.absoluteFilePath();
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
    // Files by name, then folders by name. Taken from a heap one at a time rather than sorted
    // first: the first file of a folder of 100,000 is found without ordering the other 99,999,
    // and each entry's kind is read once instead of at every comparison. Names only, not a
    // QFileInfo per entry: a folder that size would hold tens of megabytes of file details.
    std::vector<Entry> entries;
    QDirIterator listing(path, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    while (listing.hasNext()) {
        const QFileInfo entry = listing.nextFileInfo();
        entries.push_back({entry.fileName(), entry.isDir()});
    }
    const QDir folder(path);
    std::make_heap(entries.begin(), entries.end(), &Entry::comesAfter);
    while (!entries.empty() && !m_stopped) {
        std::pop_heap(entries.begin(), entries.end(), &Entry::comesAfter);
        const Entry entry = std::move(entries.back());
        entries.pop_back();
        const QString entryPath = folder.absoluteFilePath(entry.name);
        if (entry.isDir)
            walkFolder(entryPath, root);
        else
            addFile(QFileInfo(entryPath), root, false, canonical);
    }
    if (m_stopped)
        return;
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
