#pragma once

#include <QString>

namespace sorvane::cli {

// "1.4 MB", "830 KB", "12 bytes": decimal units, as file managers show them.
QString formatBytes(qint64 bytes);

// "35 ms", "0.4 s", "42 s", "3 min 5 s", "1 h 12 min": as precise as a person needs.
QString formatDuration(double seconds);

} // namespace sorvane::cli
