#pragma once

#include <QLatin1StringView>

namespace sorvane {

// A named value offered in a settings menu, e.g. "Fast" for a scroll speed of 36.
struct CollageSettingPreset {
    QLatin1StringView label;
    double value;
};

} // namespace sorvane
