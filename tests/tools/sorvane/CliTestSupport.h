#pragma once

#include "support/ProcessRun.h"
#include "support/TestFiles.h"

#include <QString>
#include <QStringList>

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

} // namespace sorvane::test
