#include "core/SlideshowKeyRoute.h"

namespace sorvane {

std::optional<SlideshowAction> SlideshowKeyRoute::actionFor(const KeyBindings &bindings, const KeyBinding &pressed)
{
    if (const std::optional<SlideshowAction> bound = actionForKey(bindings, pressed.key, pressed.modifiers))
        return bound;
    if (pressed.key == QLatin1String("escape"))
        return SlideshowAction::exit;
    // The collage intro tells people to press "?"; it is typed with Shift on most layouts.
    if (pressed.key == QLatin1String("?"))
        return SlideshowAction::showHelp;
    return std::nullopt;
}

} // namespace sorvane
