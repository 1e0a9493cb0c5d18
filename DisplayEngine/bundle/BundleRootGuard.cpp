#include "bundle/BundleRootGuard.h"

#include <QFile>

namespace fs = std::filesystem;

namespace sorvane {

namespace {

fs::path toPath(const QString &text)
{
    return fs::path(QFile::encodeName(text).toStdString());
}

} // namespace

BundleRootGuard::BundleRootGuard(const QString &root) : m_root(toPath(root))
{
    std::error_code error;
    m_canonicalRoot = fs::weakly_canonical(m_root, error);
    if (error)
        m_canonicalRoot = m_root.lexically_normal();
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

std::optional<fs::path> BundleRootGuard::canonicalFolder(const fs::path &folder)
{
    const auto cached = m_folders.find(folder.native());
    if (cached != m_folders.end())
        return cached->second;
    std::error_code error;
    std::optional<fs::path> result;
    const fs::path canonical = fs::weakly_canonical(folder, error);
    if (!error && isInsideRoot(canonical))
        result = canonical;
    m_folders.emplace(folder.native(), result);
    return result;
}

BundleRootGuard::Resolution BundleRootGuard::resolve(const QString &relative)
{
    Resolution resolution;
    const fs::path full = m_root / toPath(relative);
    const auto folder = canonicalFolder(full.parent_path());
    if (!folder) {
        resolution.status = Status::escapes;
        return resolution;
    }
    fs::path target = *folder / full.filename();
    std::error_code error;
    const fs::file_status link = fs::symlink_status(target, error);
    if (fs::is_symlink(link)) {
        // Where the link lands decides, even when it dangles.
        const fs::path landed = fs::weakly_canonical(target, error);
        if (error || !isInsideRoot(landed)) {
            resolution.status = Status::escapes;
            return resolution;
        }
        target = landed;
    }
    // Only regular files count: a folder, a device or a pipe is never an asset.
    const fs::file_status status = fs::status(target, error);
    if (error || !fs::is_regular_file(status) || full.filename().empty())
        return resolution;
    const auto size = fs::file_size(target, error);
    if (error)
        return resolution;
    resolution.status = Status::regularFile;
    resolution.absolutePath = QFile::decodeName(QByteArray::fromStdString(target.native()));
    resolution.size = qint64(size);
    return resolution;
}

} // namespace sorvane
