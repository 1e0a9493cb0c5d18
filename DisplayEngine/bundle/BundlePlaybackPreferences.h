#pragma once

#include "bundle/BundleBackground.h"
#include "bundle/BundleFileDisplayFormat.h"
#include "bundle/BundleFlowPreferences.h"
#include "bundle/BundleSort.h"
#include "collage/CollageLayout.h"
#include "slideshow/DisplayMode.h"
#include "slideshow/ImageFilter.h"
#include "slideshow/ImageScalingMode.h"

#include <optional>

namespace sorvane {

// A bundle's playback suggestions, typed. Enumerations always hold a value (the
// default when the manifest had none); numbers and flags stay absent when absent,
// and the *OrDefault accessors give the slideshow engine's defaults.
struct BundlePlaybackPreferences {
    DisplayMode mode = DisplayMode::standard;
    CollageLayout collageLayout = CollageLayout::flow;
    std::optional<double> intervalSeconds;
    std::optional<bool> autoAdvance;
    std::optional<bool> loop;
    std::optional<bool> reshuffleOnLoop;
    BundleSort sort = BundleSort::random;
    std::optional<qint64> shuffleSeed;
    std::optional<bool> crossfade;
    std::optional<double> transitionSeconds;
    ImageScalingMode imageScaling = ImageScalingMode::fitToScreen;
    BundleBackground background = BundleBackground::black;
    ImageFilter imageFilter = ImageFilter::none;
    std::optional<bool> showImageInfo;
    BundleFileDisplayFormat fileDisplayFormat = BundleFileDisplayFormat::filenameOnly;
    std::optional<bool> showProgress;
    BundleFlowPreferences flow;

    double intervalSecondsOrDefault() const { return intervalSeconds.value_or(5.0); }
    double transitionSecondsOrDefault() const { return transitionSeconds.value_or(0.6); }
    bool crossfadeOrDefault() const { return crossfade.value_or(true); }
    bool showImageInfoOrDefault() const { return showImageInfo.value_or(true); }
    bool showProgressOrDefault() const { return showProgress.value_or(true); }

    bool operator==(const BundlePlaybackPreferences &) const = default;
};

} // namespace sorvane
