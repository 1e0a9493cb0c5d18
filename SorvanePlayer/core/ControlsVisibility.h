#pragma once

#include <optional>

namespace sorvane {

// When the controls panel should be up: shortly after the pointer moved, or for as
// long as the pointer rests on the panel itself.
struct ControlsVisibility {
    static constexpr double hideAfterSeconds = 3.0;

    std::optional<double> lastMovement; // monotonic seconds of the last pointer movement
    bool pointerOnStrip = false;

    bool wantsVisible(double now) const
    {
        return pointerOnStrip || (lastMovement && now - *lastMovement < hideAfterSeconds);
    }

    bool operator==(const ControlsVisibility &) const = default;
};

} // namespace sorvane
