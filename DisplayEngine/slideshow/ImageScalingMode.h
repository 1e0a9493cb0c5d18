#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// How a slide is scaled to its window. The raw value is the label, which is
// also what the settings store: never reword it.
enum class ImageScalingMode { fitToScreen, fillScreen, actualSize };

inline constexpr std::array<ImageScalingMode, 3> allImageScalingModes {
    ImageScalingMode::fitToScreen, ImageScalingMode::fillScreen, ImageScalingMode::actualSize};

// "Fit to Screen", "Fill Screen", "Actual Size".
QString toRaw(ImageScalingMode mode);
template <> std::optional<ImageScalingMode> fromRaw<ImageScalingMode>(QStringView raw);

} // namespace sorvane
