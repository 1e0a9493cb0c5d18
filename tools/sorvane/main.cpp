#include "CommandLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sorvane"));
    sorvane::cli::configureLogging(false);
    QTextStream out(stdout);
    QTextStream err(stderr);
    const int status = sorvane::cli::run(QCoreApplication::arguments().mid(1), out, err);
    out.flush();
    err.flush();
    return status;
}
