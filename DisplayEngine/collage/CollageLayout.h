#pragma once

namespace sorvane {

// The arrangement of a collage wall.
enum class CollageLayout { flow, scatter, varied };

} // namespace sorvane
