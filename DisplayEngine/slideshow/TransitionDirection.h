#pragma once

namespace sorvane {

// The sense of navigation a transition runs in: to the next slide or back to the previous one.
enum class TransitionDirection { forward, backward };

} // namespace sorvane
