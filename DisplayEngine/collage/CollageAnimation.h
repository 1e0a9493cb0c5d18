#pragma once

#include "collage/CollageMutationKind.h"

namespace sorvane {

// How a view animates one change of a wall's content.
struct CollageAnimation {
    enum class Curve {
        none, // set directly
        easeInOut, // over `duration`
        spring, // with `response` and `dampingFraction`
    };

    Curve curve = Curve::none;
    double duration = 0.0; // seconds
    double response = 0.0; // seconds
    double dampingFraction = 0.0;

    bool operator==(const CollageAnimation &) const = default;

    static CollageAnimation easeInOut(double duration) { return {Curve::easeInOut, duration, 0.0, 0.0}; }
    static CollageAnimation spring(double response, double dampingFraction)
    {
        return {Curve::spring, 0.0, response, dampingFraction};
    }

    // A photo landing on or leaving the Scatter table of the wall that made the change.
    static CollageAnimation scatterDrop() { return spring(0.45, 0.7); }
    // A follower's update copied from its leader.
    static CollageAnimation mirrored(CollageMutationKind kind);
};

} // namespace sorvane
