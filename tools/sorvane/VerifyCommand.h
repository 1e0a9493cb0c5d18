#pragma once

#include <QStringList>
#include <QTextStream>

namespace sorvane::cli {

// `sorvane verify PATH [--level size|decode|full] [--json]`.
int runVerify(const QStringList &arguments, QTextStream &out, QTextStream &err);

} // namespace sorvane::cli
