#pragma once

#include "collage/CollageLayout.h"
#include "collage/FlowOrientation.h"
#include "collage/FlowWeightMode.h"

#include <QString>
#include <QtGlobal>

#include <optional>

namespace sorvane {

class Preferences;
struct BundlePlaybackPreferences;

// How collage walls behave: the viewer's own choice (kept under the
// "collage." preference keys) or a bundle's suggestion.
struct CollageSlideshowSettings {
    static constexpr qint64 minFlowTilesPerChange = 1;
    static constexpr qint64 minFlowColumnAdjustment = -6;
    static constexpr qint64 maxFlowColumnAdjustment = 6;
    static constexpr double minFlowScrollSpeed = 6.0;
    static constexpr double maxFlowScrollSpeed = 72.0;
    static constexpr double maxFlowScrollPointerPause = 5.0;

    CollageLayout defaultLayout = CollageLayout::flow;
    // Seconds between two changes of the wall.
    double imageChangeInterval = 4.0;
    bool shuffleVariedLayout = true;
    // Seconds between two template switches of the Varied wall.
    double variedLayoutInterval = 60.0;
    bool showTileHoverControls = true;
    FlowWeightMode flowWeightMode = FlowWeightMode::proportional;
    FlowOrientation flowOrientation = FlowOrientation::vertical;
    qint64 flowTilesPerChange = 2;
    bool flowStaggerSwaps = true;
    qint64 flowColumnAdjustment = 0;
    bool flowInfiniteScroll = true;
    bool flowScrollBidirectional = true;
    double flowScrollSpeed = 18.0;
    // Seconds the scrolling stays paused after the pointer moved over the wall.
    double flowScrollPointerPause = 0.5;
    bool flowAutoCycleTiles = false;

    // The bounds applied whenever a value is read.
    static qint64 clampFlowTilesPerChange(qint64 tiles);
    static qint64 clampFlowColumnAdjustment(qint64 adjustment);
    // A NaN speed gives the default: no wall can scroll at it.
    static double clampFlowScrollSpeed(double speed);
    // A NaN pause gives the default.
    static double clampFlowScrollPointerPause(double seconds);

    // The stored settings. A missing key, or one holding another type, gives
    // the field's default; a present value goes through its clamp. An integer
    // is accepted where a double is stored.
    static CollageSlideshowSettings load(const Preferences &preferences);
    // Writes all fifteen keys at once, exactly as held: values outside their
    // bounds are kept and only clamped when read back.
    std::optional<QString> save(Preferences &preferences) const;

    // The settings a bundle asks for: its layout and the flow values it
    // gives, clamped, over `base` for everything it leaves out. Nothing is
    // stored: a bundle never changes the viewer's own settings.
    static CollageSlideshowSettings forBundle(
        const BundlePlaybackPreferences &playback, const CollageSlideshowSettings &base);

    bool operator==(const CollageSlideshowSettings &) const = default;
};

} // namespace sorvane
