#pragma once

#include <QStringList>
#include <QTextStream>

namespace sorvane::cli {

// `sorvane export SOURCE... --to DIR [options]`.
int runExport(const QStringList &arguments, QTextStream &out, QTextStream &err);

} // namespace sorvane::cli
