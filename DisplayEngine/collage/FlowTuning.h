#pragma once

#include "collage/CollageSlideshowSettings.h"

namespace sorvane {

// Fixed tuning of the Flow wall. Distances are in points, times in seconds.
struct FlowTuning {
    // Strip thickness the strip count aims for, vertical and horizontal.
    static constexpr double flowTargetColumnWidth = 400.0;
    static constexpr double flowTargetRowHeight = 400.0;
    static constexpr int flowMinColumns = 2;
    static constexpr int flowMaxColumns = 8;
    // Gap between strips, between the tiles of a strip and at the outer edges.
    static constexpr double flowSpacing = 6.0;
    // Width / height assumed until an item's image has loaded.
    static constexpr double flowDefaultAspect = 1.0;
    // Floor on an aspect, so that no tile becomes endlessly long.
    static constexpr double flowMinAspect = 0.05;
    // Vertical strips are seeded as if each tile were this fraction of the thickness long.
    static constexpr double flowFillHeightFactor = 0.8;
    // Seeding adds this many tiles per strip beyond those that fill the screen.
    static constexpr int flowExtraTiles = 4;

    // Scroll speed in points per second: the default and the range the wall accepts
    // (the bounds are the settings' own, so the two can never disagree).
    static constexpr double flowDefaultScrollSpeed = 18.0;
    static constexpr double flowMinScrollSpeed = CollageSlideshowSettings::minFlowScrollSpeed;
    static constexpr double flowMaxScrollSpeed = CollageSlideshowSettings::maxFlowScrollSpeed;
    // Pause after a pointer movement: the default and the range the wall accepts.
    static constexpr double flowDefaultPointerPause = 0.5;
    static constexpr double flowMaxPointerPause = CollageSlideshowSettings::maxFlowScrollPointerPause;
    // The user's offset to the computed strip count is kept within ± this.
    static constexpr int flowMaxColumnAdjustment = int(CollageSlideshowSettings::maxFlowColumnAdjustment);

    // With automatic cycling on, one more tile is replaced per this many seconds of scrolling.
    static constexpr double flowRecycleInterval = 1.5;
};

} // namespace sorvane
