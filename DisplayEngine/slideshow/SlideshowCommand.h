#pragma once

#include <array>

namespace sorvane {

// What menus and other windows send to slideshows (keys go through SlideshowAction instead).
enum class SlideshowCommand {
    nextImage,
    previousImage,
    togglePlayPause,
    stop,
    toggleFullScreen,
    increaseDuration,
    decreaseDuration,
    zoomIn,
    zoomOut,
    resetZoom,
    toggleSortMode,
};

inline constexpr std::array<SlideshowCommand, 11> allSlideshowCommands {SlideshowCommand::nextImage,
    SlideshowCommand::previousImage, SlideshowCommand::togglePlayPause, SlideshowCommand::stop,
    SlideshowCommand::toggleFullScreen, SlideshowCommand::increaseDuration, SlideshowCommand::decreaseDuration,
    SlideshowCommand::zoomIn, SlideshowCommand::zoomOut, SlideshowCommand::resetZoom, SlideshowCommand::toggleSortMode};

} // namespace sorvane
