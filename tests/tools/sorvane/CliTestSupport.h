#pragma once

#include "support/ProcessRun.h"
#include "support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <span>

namespace sorvane::test {

// The sorvane binary built alongside these tests.
inline QString sorvaneProgram()
{
    return QStringLiteral(SORVANE_BIN);
}

inline Outcome sorvane(const QStringList &arguments)
{
    return run(sorvaneProgram(), arguments);
}

// A command line, the status it must exit with and text it must print (on either stream).
struct CommandCase {
    QStringList arguments;
    int status;
    const char *needle;
};

inline void expectCommandOutcomes(std::span<const CommandCase> cases)
{
    for (const CommandCase &c : cases) {
        const Outcome result = sorvane(c.arguments);
        EXPECT_EQ(result.status, c.status) << qPrintable(c.arguments.join(' '));
        EXPECT_TRUE((result.out + result.err).contains(c.needle)) << qPrintable(c.arguments.join(' ')) << "\n"
                                                                  << qPrintable(result.out + result.err);
    }
}

// Tests that share one bundle exported from the demo's sample media (photos in every orientation,
// animations, a video and two broken files). Painting and exporting take seconds and ctest runs
// every test in a process of its own, so the bundle is made once for each build of the two
// programs, in the build tree, under a lock; tests only read it.
class SampleBundleSuite : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_dir = new QTemporaryDir;
        const QString shared = QStringLiteral(SAMPLE_CACHE_DIR);
        QDir().mkpath(shared);
        QLockFile lock(shared + QStringLiteral("/.lock"));
        ASSERT_TRUE(lock.lock());
        QByteArray stamp;
        for (const char *program : {SORVANE_BIN, SAMPLE_MEDIA_BIN}) {
            const QFileInfo info(QString::fromUtf8(program));
            stamp += QByteArray::number(info.lastModified().toMSecsSinceEpoch()) + ' ' + QByteArray::number(info.size())
                + '\n';
        }
        if (readAll(shared + QStringLiteral("/stamp")) == stamp)
            return;
        QDir(sampleRoot()).removeRecursively();
        const QString media = shared + QStringLiteral("/media");
        const Outcome painted = run(QStringLiteral(SAMPLE_MEDIA_BIN), {media});
        ASSERT_EQ(painted.status, 0) << qPrintable(painted.err);
        const Outcome exported = sorvane({QStringLiteral("export"), media, QStringLiteral("--to"), shared,
            QStringLiteral("--name"), QStringLiteral("sample"), QStringLiteral("--sha256"), QStringLiteral("--quiet")});
        ASSERT_EQ(exported.status, 0) << qPrintable(exported.err);
        ASSERT_TRUE(writeAll(shared + QStringLiteral("/stamp"), stamp));
    }
    static void TearDownTestSuite()
    {
        delete s_dir;
        s_dir = nullptr;
    }
    // A path in the suite's own temporary folder.
    static QString suitePath(const QString &relative) { return s_dir->filePath(relative); }
    static QString sampleRoot() { return QStringLiteral(SAMPLE_CACHE_DIR "/sample"); }

private:
    static inline QTemporaryDir *s_dir = nullptr;
};

} // namespace sorvane::test
