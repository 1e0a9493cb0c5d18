#pragma once

#include "collage/CollageLayout.h"
#include "slideshow/ControlScope.h"
#include "slideshow/SlideshowLaunchRequest.h"
#include "slideshow/SortMode.h"
#include "slideshow/SyncMode.h"
#include "slideshow/TransitionStyle.h"

#include <QStringList>

#include <optional>

namespace sorvane {

class SlideshowGlobalSettings;
struct SlideshowSettings;

// What one run of the slideshow application was asked to do. Every option is for this
// run only: a missing one leaves the stored choice in place.
struct SlideshowRunOptions {
    QStringList paths;
    std::optional<SlideshowLaunchRequest::MonitorTarget> screens;
    std::optional<SlideshowLaunchRequest::Mode> mode;
    std::optional<CollageLayout> layout;
    std::optional<SortMode> sort;
    std::optional<double> interval; // seconds
    std::optional<TransitionStyle> transition;
    std::optional<ControlScope> scope;
    std::optional<SyncMode> sync;
    std::optional<double> phaseDelay; // seconds

    // The screens, mode and layout asked for; a layout alone asks for a collage.
    SlideshowLaunchRequest launchRequest() const;
    // The first window's order: the one asked for, else random.
    SortMode sortMode() const { return sort.value_or(SortMode::random); }
    void applyTo(SlideshowSettings &settings) const;
    void applyTo(SlideshowGlobalSettings &global) const;
    bool changesSettings() const { return interval || transition; }
    bool changesGlobalSettings() const { return scope || sync || phaseDelay; }

    bool operator==(const SlideshowRunOptions &) const = default;
};

} // namespace sorvane
