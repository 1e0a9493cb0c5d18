#pragma once

#include <QtGlobal>

namespace sorvane {

// Time since the process was started by the system (not since main()), so that
// the launch figure includes loading libraries and plugins.
class LaunchClock {
public:
    static qint64 millisecondsSinceProcessStart();
};

} // namespace sorvane
