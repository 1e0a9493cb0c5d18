#pragma once

#include "collage/FlowOrientation.h"

#include <optional>

// The one place that decides which way a Flow wall runs, so that the strip count,
// seeding and scrolling never disagree about it.
namespace sorvane::FlowOrientationRouter {

// A host that forces an orientation wins over the user's setting.
inline FlowOrientation effectiveOrientation(
    std::optional<FlowOrientation> orientationOverride, FlowOrientation flowOrientation)
{
    return orientationOverride.value_or(flowOrientation);
}

} // namespace sorvane::FlowOrientationRouter
