#include "bundle/BundleFileOps.h"

#include <QFile>
#include <QSaveFile>

#include <filesystem>

namespace fs = std::filesystem;

namespace sorvane {

namespace {

fs::path toPath(const QString &text)
{
    return fs::path(QFile::encodeName(text).toStdString());
}

std::optional<QString> describe(const std::error_code &error)
{
    if (!error)
        return std::nullopt;
    return QString::fromLocal8Bit(error.message().c_str());
}

} // namespace

std::optional<QString> BundleFileOps::makeFolder(const QString &path)
{
    std::error_code error;
    fs::create_directories(toPath(path), error);
    return describe(error);
}

std::optional<QString> BundleFileOps::copyFile(const QString &from, const QString &to)
{
    std::error_code error;
    fs::copy_file(toPath(from), toPath(to), fs::copy_options::overwrite_existing, error);
    return describe(error);
}

std::optional<QString> BundleFileOps::copyTree(const QString &from, const QString &to, qint64 *bytes)
{
    std::error_code error;
    // Links inside a payload are kept as links: a player's libraries rely on them.
    fs::copy(toPath(from), toPath(to), fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    if (bytes)
        *bytes = error ? 0 : treeBytes(to);
    return describe(error);
}

std::optional<QString> BundleFileOps::writeAtomically(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return file.errorString();
    return std::nullopt;
}

std::optional<QString> BundleFileOps::rename(const QString &from, const QString &to)
{
    std::error_code error;
    fs::rename(toPath(from), toPath(to), error);
    return describe(error);
}

std::optional<QString> BundleFileOps::removeTree(const QString &path)
{
    std::error_code error;
    fs::remove_all(toPath(path), error);
    return describe(error);
}

qint64 BundleFileOps::treeBytes(const QString &path)
{
    std::error_code error;
    qint64 total = 0;
    for (auto it = fs::recursive_directory_iterator(toPath(path), error); !error && it != fs::end(it);
         it.increment(error)) {
        if (it->is_regular_file(error) && !it->is_symlink(error))
            total += qint64(it->file_size(error));
    }
    return total;
}

bool BundleFileOps::exists(const QString &path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(toPath(path), error));
}

} // namespace sorvane
