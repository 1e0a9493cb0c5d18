#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// How one slide gives way to the next. `random` draws one of kenBurns, slide, zoom
// and flip for each slide. Raw values are stored in the settings: never reword them.
enum class TransitionStyle { none, crossFade, kenBurns, slide, zoom, flip, random };

inline constexpr std::array<TransitionStyle, 7> allTransitionStyles {TransitionStyle::none, TransitionStyle::crossFade,
    TransitionStyle::kenBurns, TransitionStyle::slide, TransitionStyle::zoom, TransitionStyle::flip,
    TransitionStyle::random};

// "none", "crossFade", ... as the enumeration's cases are named.
QString toRaw(TransitionStyle style);
template <> std::optional<TransitionStyle> fromRaw<TransitionStyle>(QStringView raw);

// What a settings screen shows for a style.
QString label(TransitionStyle style);
QString description(TransitionStyle style);
// A platform symbol name.
QString iconName(TransitionStyle style);

} // namespace sorvane
