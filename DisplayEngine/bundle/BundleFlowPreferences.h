#pragma once

#include "collage/FlowOrientation.h"
#include "collage/FlowWeightMode.h"

#include <QtGlobal>
#include <optional>

namespace sorvane {

// The flow wall's settings as a bundle suggests them; absent numbers and flags stay absent.
struct BundleFlowPreferences {
    FlowOrientation orientation = FlowOrientation::vertical;
    std::optional<qint64> columnAdjustment;
    std::optional<bool> infiniteScroll;
    std::optional<bool> bidirectionalScroll;
    std::optional<double> scrollSpeed;
    std::optional<bool> autoCycleTiles;
    std::optional<qint64> tilesPerChange;
    std::optional<bool> staggerSwaps;
    FlowWeightMode weightMode = FlowWeightMode::proportional;

    bool operator==(const BundleFlowPreferences &) const = default;
};

} // namespace sorvane
