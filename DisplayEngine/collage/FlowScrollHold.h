#pragma once

namespace sorvane {

// The reasons a Flow wall's scrolling stands still; it runs only when none holds.
enum class FlowScrollHold : unsigned {
    // The user paused scrolling.
    user = 1u << 0,
    // The pointer moved over the wall a moment ago.
    pointer = 1u << 1,
    // The whole wall is paused by its host.
    wall = 1u << 2,
    // Endless scrolling is off: the wall stands still.
    still = 1u << 3,
};

} // namespace sorvane
