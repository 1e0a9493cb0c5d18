#pragma once

#include <QString>

namespace sorvane::cli {

// "1.4 MB", "830 KB", "12 bytes": decimal units, as file managers show them.
QString formatBytes(qint64 bytes);

} // namespace sorvane::cli
