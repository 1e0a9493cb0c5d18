#pragma once

#include "slideshow/KeyBinding.h"
#include "slideshow/SlideshowAction.h"

#include <optional>

namespace sorvane {

// What a key pressed in a slideshow window asks of the manager, read through that window's
// own bindings. Escape always stops (by the Escape behaviour) unless the user bound it to
// something else, so a show can be left even when its exit binding moved to another key;
// "?" shows the shortcut card unless it is bound to something else.
class SlideshowKeyRoute {
public:
    static std::optional<SlideshowAction> actionFor(const KeyBindings &bindings, const KeyBinding &pressed);
};

} // namespace sorvane
