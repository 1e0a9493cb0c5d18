#pragma once

namespace sorvane {

// How a slide is scaled to its window.
enum class ImageScalingMode { fitToScreen, fillScreen, actualSize };

} // namespace sorvane
