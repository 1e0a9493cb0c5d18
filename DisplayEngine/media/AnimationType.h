#pragma once

namespace sorvane {

// Which animated decoder an item needs; `none` is a still image. Never stored
// as text, so it has no raw values.
enum class AnimationType { none, gif, webp };

} // namespace sorvane
