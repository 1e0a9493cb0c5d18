#pragma once

#include "slideshow/SlideshowAction.h"
#include "slideshow/SlideshowCommand.h"

#include <optional>

namespace sorvane {

class SlideshowViewModel;

// How keys and menu commands become view-model operations.
class SlideshowActionDispatch {
public:
    // The action a menu command stands for; `stop` has none (it closes windows).
    static std::optional<SlideshowAction> actionFor(SlideshowCommand command);
    // Runs a scoped action on one window. Play/pause is not run here: the manager sets
    // it, so that every reached window ends in the same state.
    static void apply(SlideshowViewModel &viewModel, SlideshowAction action);
};

} // namespace sorvane
