#pragma once

#include "slideshow/TransitionDirection.h"
#include "slideshow/TransitionStyle.h"

#include <QSizeF>

namespace sorvane {

// Where a running transition stands: the input of TransitionLayers.
struct TransitionMotion {
    TransitionStyle style = TransitionStyle::crossFade;
    // 0 at the start of the transition, 1 at its end.
    double progress = 0;
    TransitionDirection direction = TransitionDirection::forward;
    // Drift direction of the incoming slide and how far its Ken Burns drift has run (0..1).
    QSizeF kenBurnsVector;
    double kenBurnsAmount = 0;
    // The same for the outgoing slide, as it stood when it started leaving.
    QSizeF outgoingKenBurnsVector;
    double outgoingKenBurnsAmount = 0;
};

} // namespace sorvane
