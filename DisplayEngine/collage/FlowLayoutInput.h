#pragma once

#include "collage/FlowOrientation.h"
#include "collage/FlowWeightMode.h"

#include <QtGlobal>

namespace sorvane {

// What the Flow geometry is computed from: the container and the settings that shape it.
struct FlowLayoutInput {
    double width = 0;
    double height = 0;
    // The user's offset to the computed strip count; held within ±6 when used.
    qint64 flowColumnAdjustment = 0;
    // The effective orientation (FlowOrientationRouter), not necessarily the stored one.
    FlowOrientation orientation = FlowOrientation::vertical;
    FlowWeightMode flowWeightMode = FlowWeightMode::proportional;

    bool operator==(const FlowLayoutInput &) const = default;
};

} // namespace sorvane
