#pragma once

namespace sorvane {

// The user's request to move through a wall's history.
enum class CollageWallStep { forward, back };

} // namespace sorvane
