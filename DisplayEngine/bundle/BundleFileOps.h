#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace sorvane {

// The writer's file-system calls, each answering with the system's own error
// description on failure ("No space left on device", "Permission denied") and
// nothing on success. Copies are streamed by the kernel; nothing is held in memory.
class BundleFileOps {
public:
    static std::optional<QString> makeFolder(const QString &path);
    static std::optional<QString> copyFile(const QString &from, const QString &to);
    // Copies a folder's whole tree; `bytes` receives the bytes copied.
    static std::optional<QString> copyTree(const QString &from, const QString &to, qint64 *bytes);
    // Writes beside the target, then renames it into place.
    static std::optional<QString> writeAtomically(const QString &path, const QByteArray &bytes);
    static std::optional<QString> rename(const QString &from, const QString &to);
    static std::optional<QString> removeTree(const QString &path);
    // Total size of the regular files below `path`.
    static qint64 treeBytes(const QString &path);
    static bool exists(const QString &path);
};

} // namespace sorvane
