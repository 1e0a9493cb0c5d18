#pragma once

#include <QStringList>
#include <QTextStream>

namespace sorvane::cli {

// Exit statuses shared by every command.
// 130 is what shells report for a program ended by Ctrl-C.
enum ExitStatus { exitOk = 0, exitFailed = 1, exitUsage = 2, exitCancelled = 130 };

// Runs `sorvane ARGS...` (arguments without the program name); returns the exit status.
int run(const QStringList &arguments, QTextStream &out, QTextStream &err);

// Quiets the engine's informational log lines unless the user asked to see them.
void configureLogging(bool verbose);

} // namespace sorvane::cli
