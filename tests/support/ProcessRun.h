#pragma once

#include <QString>
#include <QStringList>

namespace sorvane::test {

// How a finished program ended and what it printed.
struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

// Runs a program to its end (failing the test if it takes more than two minutes).
Outcome run(const QString &program, const QStringList &arguments);

} // namespace sorvane::test
