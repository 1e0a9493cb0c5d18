#pragma once

namespace sorvane {

// Colour filter applied to slides.
enum class ImageFilter { none, blackAndWhite, sepia, vintage };

} // namespace sorvane
