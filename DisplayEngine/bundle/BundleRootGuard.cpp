#include "bundle/BundleRootGuard.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace sorvane {

namespace {

// Folder handles kept open at once; a bundle has a handful of folders, and a
// hostile manifest naming thousands must not exhaust descriptors.
constexpr int maxOpenHandles = 256;

fs::path toPath(const QString &text)
{
    return fs::path(QFile::encodeName(text).toStdString());
}

QString fromPath(const fs::path &path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

BundleRootGuard::Resolution regularFile(const QString &path, const struct stat &info)
{
    if (!S_ISREG(info.st_mode))
        return {};
    return {BundleRootGuard::Status::regularFile, path, qint64(info.st_size)};
}

} // namespace

BundleRootGuard::BundleRootGuard(const QString &root) : m_root(toPath(root))
{
    std::error_code error;
    m_canonicalRoot = fs::weakly_canonical(m_root, error);
    if (error)
        m_canonicalRoot = m_root.lexically_normal();
}

BundleRootGuard::~BundleRootGuard()
{
    for (const Folder &folder : std::as_const(m_folders)) {
        if (folder.handle >= 0)
            ::close(folder.handle);
    }
}

bool BundleRootGuard::isInsideRoot(const fs::path &canonical) const
{
    // Compare whole components so that "/b/root2" is not taken to be inside "/b/root".
    auto it = canonical.begin();
    for (const auto &component : m_canonicalRoot) {
        if (component.empty())
            continue; // a trailing separator
        if (it == canonical.end() || *it != component)
            return false;
        ++it;
    }
    return true;
}

BundleRootGuard::Folder BundleRootGuard::folder(const QString &relative)
{
    const std::lock_guard lock(m_foldersLock);
    const auto cached = m_folders.constFind(relative);
    if (cached != m_folders.constEnd())
        return *cached;
    Folder folder;
    std::error_code error;
    const fs::path canonical = fs::weakly_canonical(m_root / toPath(relative), error);
    folder.inside = !error && isInsideRoot(canonical);
    if (folder.inside) {
        folder.canonical = fromPath(canonical);
        if (m_openHandles < maxOpenHandles) {
            folder.handle = ::open(canonical.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (folder.handle >= 0)
                ++m_openHandles;
        }
    }
    return *m_folders.insert(relative, folder);
}

BundleRootGuard::Resolution BundleRootGuard::resolveLink(const Folder &folder, const QString &name) const
{
    // Where the link lands decides, even when it dangles.
    std::error_code error;
    const fs::path landed = fs::weakly_canonical(toPath(folder.canonical) / toPath(name), error);
    if (error || !isInsideRoot(landed))
        return {Status::escapes, {}, 0};
    struct stat info;
    if (::stat(landed.c_str(), &info) != 0)
        return {};
    return regularFile(fromPath(landed), info);
}

BundleRootGuard::Resolution BundleRootGuard::resolve(const QString &relative)
{
    const qsizetype slash = relative.lastIndexOf(QLatin1Char('/'));
    const QString name = relative.mid(slash + 1);
    const Folder where = folder(slash < 0 ? QString() : relative.left(slash));
    if (!where.inside)
        return {Status::escapes, {}, 0};
    if (name.isEmpty())
        return {};

    const QByteArray encoded = QFile::encodeName(name);
    struct stat info;
    const int status = where.handle >= 0
        ? ::fstatat(where.handle, encoded.constData(), &info, AT_SYMLINK_NOFOLLOW)
        : ::lstat(QFile::encodeName(where.canonical + QLatin1Char('/') + name).constData(), &info);
    if (status != 0)
        return {};
    if (S_ISLNK(info.st_mode))
        return resolveLink(where, name);
    // Only regular files count: a folder, a device or a pipe is never an asset.
    return regularFile(where.canonical + QLatin1Char('/') + name, info);
}

} // namespace sorvane
