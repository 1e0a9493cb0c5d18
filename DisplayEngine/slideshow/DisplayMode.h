#pragma once

namespace sorvane {

// Whether a slideshow shows one item at a time or a collage wall.
enum class DisplayMode { standard, collage };

} // namespace sorvane
