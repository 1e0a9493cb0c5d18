#pragma once

#include <QString>

#include <filesystem>
#include <optional>
#include <unordered_map>

namespace sorvane {

// Resolves bundle-relative paths to files that really lie inside the bundle
// root, following symbolic links wherever they are in the path. Folders are
// canonicalised once each, so checking thousands of assets costs about one
// lstat per file. Not thread-safe; one guard per open.
class BundleRootGuard {
public:
    enum class Status { regularFile, absent, escapes };

    struct Resolution {
        Status status = Status::absent;
        QString absolutePath; // set for regularFile
        qint64 size = 0; // set for regularFile
    };

    explicit BundleRootGuard(const QString &root);

    // `relative` must already have passed isSafeBundleRelativePath.
    Resolution resolve(const QString &relative);

private:
    bool isInsideRoot(const std::filesystem::path &canonical) const;
    std::optional<std::filesystem::path> canonicalFolder(const std::filesystem::path &folder);

    std::filesystem::path m_root;
    std::filesystem::path m_canonicalRoot;
    std::unordered_map<std::string, std::optional<std::filesystem::path>> m_folders;
};

} // namespace sorvane
