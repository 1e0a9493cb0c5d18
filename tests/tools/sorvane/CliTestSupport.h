#pragma once

#include "support/ProcessRun.h"

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

// Tests that share one bundle, exported once for their suite from the demo's sample media (photos
// in every orientation, animations, a video and two broken files) into a temporary folder.
class SampleBundleSuite : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_dir = new QTemporaryDir;
        const Outcome painted = run(QStringLiteral(SAMPLE_MEDIA_BIN), {suitePath(QStringLiteral("media"))});
        ASSERT_EQ(painted.status, 0) << qPrintable(painted.err);
        const Outcome exported = sorvane({QStringLiteral("export"), suitePath(QStringLiteral("media")),
            QStringLiteral("--to"), s_dir->path(), QStringLiteral("--name"), QStringLiteral("sample"),
            QStringLiteral("--sha256"), QStringLiteral("--quiet")});
        ASSERT_EQ(exported.status, 0) << qPrintable(exported.err);
    }
    static void TearDownTestSuite()
    {
        delete s_dir;
        s_dir = nullptr;
    }
    // A path in the suite's temporary folder.
    static QString suitePath(const QString &relative) { return s_dir->filePath(relative); }
    static QString sampleRoot() { return suitePath(QStringLiteral("sample")); }

private:
    static inline QTemporaryDir *s_dir = nullptr;
};

} // namespace sorvane::test
