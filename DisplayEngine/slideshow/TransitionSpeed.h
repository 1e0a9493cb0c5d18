#pragma once

#include <QString>

#include <array>

namespace sorvane {

// Presets for the length of a transition. Not stored: a speed is a view of the settings'
// `transitionDuration`, and choosing one sets that duration to its seconds.
enum class TransitionSpeed { slow, normal, fast };

inline constexpr std::array<TransitionSpeed, 3> allTransitionSpeeds {
    TransitionSpeed::slow, TransitionSpeed::normal, TransitionSpeed::fast};

QString toRaw(TransitionSpeed speed);
QString label(TransitionSpeed speed);
double seconds(TransitionSpeed speed);
// The preset nearest to `duration` seconds; a tie goes to the slower one (0.8 is slow, 0.45 normal).
TransitionSpeed speedForDuration(double duration);

} // namespace sorvane
