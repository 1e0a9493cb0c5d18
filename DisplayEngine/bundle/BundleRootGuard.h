#pragma once

#include <QHash>
#include <QString>

#include <filesystem>
#include <mutex>

namespace sorvane {

// Resolves bundle-relative paths to files that really lie inside the bundle
// root, following symbolic links wherever they are in the path. Each distinct
// folder is canonicalised and opened once; a file then costs one lstat relative
// to its folder's handle. The one place where the reader touches the operating
// system's file calls. Safe to use from several threads at once.
class BundleRootGuard {
public:
    enum class Status { regularFile, absent, escapes };

    struct Resolution {
        Status status = Status::absent;
        QString absolutePath; // set for regularFile
        qint64 size = 0; // set for regularFile
    };

    explicit BundleRootGuard(const QString &root);
    ~BundleRootGuard();
    BundleRootGuard(const BundleRootGuard &) = delete;
    BundleRootGuard &operator=(const BundleRootGuard &) = delete;

    // `relative` must already have passed isSafeBundleRelativePath.
    Resolution resolve(const QString &relative);

private:
    struct Folder {
        bool inside = false;
        QString canonical;
        int handle = -1;
    };

    bool isInsideRoot(const std::filesystem::path &canonical) const;
    Folder folder(const QString &relative);
    Resolution resolveLink(const Folder &folder, const QString &name) const;

    std::filesystem::path m_root;
    std::filesystem::path m_canonicalRoot;
    QHash<QString, Folder> m_folders;
    int m_openHandles = 0;
    std::mutex m_foldersLock;
};

} // namespace sorvane
