#include "core/SingleInstanceLock.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

#include <utility>

namespace sorvane {

namespace {

// A writer fills its lock file in within milliseconds of creating it; one still unreadable
// after this long belongs to a process that died in between.
constexpr qint64 unreadableLockGraceMs = 10 * 1000;

bool isUnreadableAndOld(const QString &path)
{
    if (QLockFile(path).getLockInfo(nullptr, nullptr, nullptr))
        return false;
    const QFileInfo info(path);
    return info.exists() && qAbs(info.lastModified().msecsTo(QDateTime::currentDateTime())) > unreadableLockGraceMs;
}

} // namespace

SingleInstanceLock::SingleInstanceLock(QString folder) : m_folder(std::move(folder)) { }

SingleInstanceLock::~SingleInstanceLock() = default;

QString SingleInstanceLock::defaultFolder()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return runtime.isEmpty() ? QDir::tempPath() : runtime;
}

QString SingleInstanceLock::filePath() const
{
    return m_folder + u'/' + QLatin1String(fileName);
}

SingleInstanceLock::Outcome SingleInstanceLock::tryAcquire()
{
    if (isHeld())
        return Outcome::acquired;
    if (m_folder.trimmed().isEmpty() || !QDir().mkpath(m_folder))
        return Outcome::unavailable;

    // Something else in the lock's place is no sign of another player, and no QLockFile
    // will ever remove it.
    const QFileInfo existing(filePath());
    if (existing.exists() && !existing.isFile())
        return Outcome::unavailable;

    auto lock = std::make_unique<QLockFile>(filePath());
    // The player holds the lock for hours: an age limit would let a second start call a
    // running player's lock stale wherever the system's file locks do not protect it.
    // Without one, only a lock whose writer has died is stale.
    lock->setStaleLockTime(0);
    bool locked = lock->tryLock(0);
    if (!locked && lock->error() == QLockFile::LockFailedError && isUnreadableAndOld(filePath())) {
        // Without an age limit, a lock whose writer died before filling it in would keep
        // the player out for good.
        locked = lock->removeStaleLockFile() && lock->tryLock(0);
    }
    if (locked) {
        m_lock = std::move(lock);
        return Outcome::acquired;
    }
    return lock->error() == QLockFile::LockFailedError ? Outcome::heldElsewhere : Outcome::unavailable;
}

void SingleInstanceLock::release()
{
    m_lock.reset(); // QLockFile removes its file when destroyed while locked
}

bool SingleInstanceLock::isHeld() const
{
    return m_lock && m_lock->isLocked();
}

} // namespace sorvane
