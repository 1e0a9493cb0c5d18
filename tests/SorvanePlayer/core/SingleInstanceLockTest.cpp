#include "core/SingleInstanceLock.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <utility>

#include <sys/wait.h>
#include <unistd.h>

using namespace sorvane;
using Outcome = SingleInstanceLock::Outcome;

namespace {

// Another process that takes the lock with QLockFile, as a second player would, then either
// keeps running until finish() or ends at once without unlocking, as a crash would.
class OtherProcess {
public:
    OtherProcess(const QString &lockPath, bool dies)
    {
        int ready[2];
        int stop[2];
        if (::pipe(ready) != 0 || ::pipe(stop) != 0)
            return;
        m_pid = ::fork();
        if (m_pid == 0) {
            ::close(stop[1]); // or the read below would never see the end
            QLockFile lock(lockPath);
            lock.setStaleLockTime(0);
            const char locked = lock.tryLock(0) ? 'y' : 'n';
            (void)!::write(ready[1], &locked, 1);
            char ignored;
            if (!dies)
                (void)!::read(stop[0], &ignored, 1); // until the parent closes its end
            ::_exit(0); // no destructors: the lock file stays behind
        }
        ::close(ready[1]);
        ::close(stop[0]);
        m_stop = stop[1];
        char locked = 'n';
        m_locked = ::read(ready[0], &locked, 1) == 1 && locked == 'y';
        ::close(ready[0]);
        if (dies)
            finish();
    }
    ~OtherProcess() { finish(); }

    bool locked() const { return m_locked; }

    // Ends the process and reaps it, so its PID no longer names a running process.
    void finish()
    {
        if (m_stop >= 0)
            ::close(std::exchange(m_stop, -1));
        if (m_pid > 0)
            ::waitpid(std::exchange(m_pid, -1), nullptr, 0);
    }

private:
    pid_t m_pid = -1;
    int m_stop = -1;
    bool m_locked = false;
};

bool setAge(const QString &path, qint64 seconds)
{
    QFile file(path);
    const QDateTime when = QDateTime::currentDateTime().addSecs(-seconds);
    return file.open(QIODevice::ReadWrite) && file.setFileTime(when, QFileDevice::FileModificationTime);
}

class SingleInstanceLockTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    // Not there yet: taking the lock creates it.
    QString folder = tmp.path() + QStringLiteral("/run/user");

    void SetUp() override { ASSERT_TRUE(tmp.isValid()); }

    QString lockPath() const { return folder + QStringLiteral("/org.sorvane.SorvanePlayer.lock"); }
};

TEST_F(SingleInstanceLockTest, LockOfAnotherProcessHoldsOnlyWhileItRuns)
{
    const struct {
        const char *name;
        bool dies;
        qint64 ageSeconds;
        Outcome expected;
    } table[] = {
        // A player left on for days must not lose its lock to a second start.
        {"running for days", false, 3 * 24 * 3600, Outcome::heldElsewhere},
        {"crashed just now", true, 0, Outcome::acquired},
        {"crashed days ago", true, 3 * 24 * 3600, Outcome::acquired},
    };
    for (const auto &row : table) {
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile::remove(lockPath());
        OtherProcess other(lockPath(), row.dies);
        ASSERT_TRUE(other.locked()) << row.name;
        ASSERT_TRUE(setAge(lockPath(), row.ageSeconds)) << row.name;

        SingleInstanceLock lock(folder);
        EXPECT_EQ(lock.tryAcquire(), row.expected) << row.name;
        EXPECT_EQ(lock.isHeld(), row.expected == Outcome::acquired) << row.name;

        // Once the other process is gone, its lock is taken over.
        other.finish();
        EXPECT_EQ(lock.tryAcquire(), Outcome::acquired) << row.name;
    }
}

TEST_F(SingleInstanceLockTest, UnreadableLockFileIsTakenOverOnlyOnceOld)
{
    const struct {
        const char *name;
        QByteArray contents;
        qint64 ageSeconds;
        Outcome expected;
    } table[] = {
        // The writer may be between creating the file and filling it in.
        {"empty, new", QByteArray(), 0, Outcome::heldElsewhere},
        {"empty, old", QByteArray(), 60, Outcome::acquired},
        {"garbage, old", QByteArray("not a pid\n"), 3600, Outcome::acquired},
    };
    for (const auto &row : table) {
        ASSERT_TRUE(QDir().mkpath(folder));
        QFile file(lockPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << row.name;
        file.write(row.contents);
        file.close();
        ASSERT_TRUE(setAge(lockPath(), row.ageSeconds)) << row.name;

        SingleInstanceLock lock(folder);
        EXPECT_EQ(lock.tryAcquire(), row.expected) << row.name;
        lock.release();
    }
}

TEST_F(SingleInstanceLockTest, UnusableFolderIsUnavailableNotHeldElsewhere)
{
    QFile blocker(tmp.path() + QStringLiteral("/file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    const struct {
        const char *name;
        QString folder;
    } table[] = {
        {"folder is a file", blocker.fileName()},
        {"folder inside a file", blocker.fileName() + QStringLiteral("/run")},
        {"no folder named", QString()},
        {"lock path is a folder", tmp.path() + QStringLiteral("/taken")},
    };
    ASSERT_TRUE(QDir().mkpath(tmp.path() + QStringLiteral("/taken/org.sorvane.SorvanePlayer.lock")));
    for (const auto &row : table) {
        SingleInstanceLock lock(row.folder);
        EXPECT_EQ(lock.tryAcquire(), Outcome::unavailable) << row.name;
        EXPECT_FALSE(lock.isHeld()) << row.name;
    }
}

} // namespace
