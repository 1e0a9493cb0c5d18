#pragma once

#include "media/OverlayCorner.h"

#include <QString>
#include <optional>

namespace sorvane {

// The brand overlay: one logo in a corner of every slide.
struct BrandOverlaySettings {
    bool enabled = false;
    std::optional<QString> imagePath;
    OverlayCorner corner = OverlayCorner::bottomRight;
    double sizePercent = 6.0;
    double opacity = 0.6;
    double marginPercent = 2.0;

    bool operator==(const BrandOverlaySettings &) const = default;
};

} // namespace sorvane
