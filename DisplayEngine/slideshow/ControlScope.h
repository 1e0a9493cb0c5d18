#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// Which slideshow windows a command reaches: the focused one, all of them, or all of
// them showing the mirror leader's image. The raw value is stored: never reword it.
enum class ControlScope { focusedOnly, all, mirrored };

inline constexpr std::array<ControlScope, 3> allControlScopes {
    ControlScope::focusedOnly, ControlScope::all, ControlScope::mirrored};

// "This Slideshow", "Linked Slideshows", "Mirror All".
QString toRaw(ControlScope scope);
template <> std::optional<ControlScope> fromRaw<ControlScope>(QStringView raw);
// The control bar's words: "Independent", "Linked", "Mirror".
QString shortLabel(ControlScope scope);

} // namespace sorvane
