#include "support/ProcessRun.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace sorvane::test {

Outcome run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << qPrintable(program);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

} // namespace sorvane::test
