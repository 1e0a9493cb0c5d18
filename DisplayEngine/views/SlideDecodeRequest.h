#pragma once

#include "slideshow/ImageFilter.h"
#include "slideshow/ImageScalingMode.h"

#include <QSize>
#include <QString>

namespace sorvane {

// One slide to decode for display.
struct SlideDecodeRequest {
    QString path;
    // The area the slide is shown in, in device pixels. A side <= 0 leaves that side
    // unconstrained; with neither side set the slide decodes at full size.
    QSize target;
    ImageScalingMode scaling = ImageScalingMode::fitToScreen;
    ImageFilter filter = ImageFilter::none;
    // Most memory the decode may take for one image; pictures that would need more are refused.
    int allocationLimitMiB = kDefaultAllocationLimitMiB;

    static constexpr int kDefaultAllocationLimitMiB = 256;

    friend bool operator==(const SlideDecodeRequest &, const SlideDecodeRequest &) = default;
};

} // namespace sorvane
