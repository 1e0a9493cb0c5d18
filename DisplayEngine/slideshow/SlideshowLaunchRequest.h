#pragma once

#include "collage/CollageLayout.h"

#include <optional>

namespace sorvane {

// What the user asked to play: one slide at a time or a collage wall, on the display
// of the key window or on every display.
struct SlideshowLaunchRequest {
    enum class Mode { standard, collage };
    enum class MonitorTarget { current, all };

    Mode mode = Mode::standard;
    std::optional<CollageLayout> layout; // collage mode only
    MonitorTarget monitor = MonitorTarget::current;

    bool operator==(const SlideshowLaunchRequest &) const = default;
};

} // namespace sorvane
