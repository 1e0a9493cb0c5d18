#pragma once

#include "slideshow/TransitionStyle.h"

#include <QtGlobal>

namespace sorvane {

class ImageItem;

// Which transition brings a new slide in. `none` means the layers swap at once.
class SlideshowTransitionChoice {
public:
    struct Input {
        const ImageItem &incoming;
        // The slide on screen, if any.
        const ImageItem *outgoing = nullptr;
        TransitionStyle setting = TransitionStyle::crossFade;
        // Frames fall behind: everything but a cut becomes a cross-fade.
        bool budgetFallback = false;
        bool reduceMotion = false;
    };

    // `draw` is a uniform random number, used only to pick a style for `random`.
    static TransitionStyle choose(const Input &input, quint64 draw);
};

} // namespace sorvane
