#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// What a key can be bound to in a slideshow window. The raw value is the label, which is
// also the action's key in the stored bindings: never reword it.
enum class SlideshowAction {
    toggleFullScreen,
    startStop,
    nextImage,
    previousImage,
    increaseInterval,
    decreaseInterval,
    toggleSortMode,
    toggleCrossFade,
    zoomIn,
    zoomOut,
    resetZoom,
    showHelp,
    exit,
    moveToTrash,
    cycleImageFilter,
};

inline constexpr std::array<SlideshowAction, 15> allSlideshowActions {SlideshowAction::toggleFullScreen,
    SlideshowAction::startStop, SlideshowAction::nextImage, SlideshowAction::previousImage,
    SlideshowAction::increaseInterval, SlideshowAction::decreaseInterval, SlideshowAction::toggleSortMode,
    SlideshowAction::toggleCrossFade, SlideshowAction::zoomIn, SlideshowAction::zoomOut, SlideshowAction::resetZoom,
    SlideshowAction::showHelp, SlideshowAction::exit, SlideshowAction::moveToTrash, SlideshowAction::cycleImageFilter};

// "Toggle Full-Screen", "Start/Stop", ...
QString toRaw(SlideshowAction action);
template <> std::optional<SlideshowAction> fromRaw<SlideshowAction>(QStringView raw);

} // namespace sorvane
