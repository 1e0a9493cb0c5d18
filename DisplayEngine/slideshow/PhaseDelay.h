#pragma once

namespace sorvane::PhaseDelay {

// Bounds of the pause between two windows' advances in phased mode, in seconds.
inline constexpr double minimum = 0.1;
inline constexpr double maximum = 5.0;
inline constexpr double defaultValue = 0.5;

} // namespace sorvane::PhaseDelay
