#pragma once

#include "slideshow/TransitionMotion.h"

#include <QPointF>
#include <QSizeF>

namespace sorvane {

// How the two layers of a slideshow window are drawn while a transition runs: pure
// functions of the motion, for the incoming layer (`isIncoming`) or the outgoing one.
class TransitionLayers {
public:
    static constexpr double kenBurnsMaxScale = 1.12;
    static constexpr double zoomInStart = 0.08;
    // Of the layer's size, per unit of Ken Burns vector.
    static constexpr double kenBurnsDrift = 0.04;
    static constexpr double flipDegrees = 90;

    static double scale(const TransitionMotion &motion, bool isIncoming);
    // In the layer's own units, for a layer of `size`.
    static QPointF offset(const TransitionMotion &motion, bool isIncoming, QSizeF size);
    // About the vertical axis, in degrees.
    static double rotation(const TransitionMotion &motion, bool isIncoming);
    static double opacity(const TransitionMotion &motion, bool isIncoming);
};

} // namespace sorvane
