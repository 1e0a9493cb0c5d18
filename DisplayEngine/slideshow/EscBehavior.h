#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// What the Escape key stops. The raw value is stored: never reword it.
enum class EscBehavior { stopFocused, stopAll, exitFullscreenFirst };

inline constexpr std::array<EscBehavior, 3> allEscBehaviors {
    EscBehavior::stopFocused, EscBehavior::stopAll, EscBehavior::exitFullscreenFirst};

// "Stop Current Slideshow", "Stop All Slideshows", "Exit Fullscreen First".
QString toRaw(EscBehavior behavior);
template <> std::optional<EscBehavior> fromRaw<EscBehavior>(QStringView raw);
QString description(EscBehavior behavior);

} // namespace sorvane
