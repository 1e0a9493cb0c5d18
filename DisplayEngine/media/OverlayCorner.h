#pragma once

namespace sorvane {

// Corner of the slide that holds the brand logo.
enum class OverlayCorner { topLeft, topRight, bottomLeft, bottomRight };

} // namespace sorvane
