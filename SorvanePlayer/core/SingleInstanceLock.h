#pragma once

#include <QString>

#include <memory>

class QLockFile;

namespace sorvane {

// Keeps the player to one instance per user: a second start would fight the first for
// the screens. The lock is a file that the system's QLockFile takes over once the
// process that wrote it has gone, so a crash never locks the player out.
class SingleInstanceLock {
public:
    static constexpr const char *fileName = "org.sorvane.SorvanePlayer.lock";

    enum class Outcome {
        acquired,
        // Another running player holds it: the caller quits.
        heldElsewhere,
        // The lock cannot be taken here (no folder, no permission): the caller plays
        // anyway, since refusing to show photos helps nobody.
        unavailable,
    };

    explicit SingleInstanceLock(QString folder);
    ~SingleInstanceLock();
    SingleInstanceLock(const SingleInstanceLock &) = delete;
    SingleInstanceLock &operator=(const SingleInstanceLock &) = delete;

    // The user's runtime folder, or the temporary folder when the system names none.
    static QString defaultFolder();

    const QString &folder() const { return m_folder; }
    QString filePath() const;

    // Does not wait. Creates the folder when missing; calling again while held is acquired.
    Outcome tryAcquire();
    // Removes the lock file when held; does nothing otherwise.
    void release();
    bool isHeld() const;

private:
    QString m_folder;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace sorvane
