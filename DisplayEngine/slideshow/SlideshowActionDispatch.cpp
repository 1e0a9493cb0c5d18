#include "slideshow/SlideshowActionDispatch.h"

#include "slideshow/SlideshowViewModel.h"

namespace sorvane {

std::optional<SlideshowAction> SlideshowActionDispatch::actionFor(SlideshowCommand command)
{
    switch (command) {
    case SlideshowCommand::nextImage:
        return SlideshowAction::nextImage;
    case SlideshowCommand::previousImage:
        return SlideshowAction::previousImage;
    case SlideshowCommand::togglePlayPause:
        return SlideshowAction::startStop;
    case SlideshowCommand::toggleFullScreen:
        return SlideshowAction::toggleFullScreen;
    case SlideshowCommand::increaseDuration:
        return SlideshowAction::increaseInterval;
    case SlideshowCommand::decreaseDuration:
        return SlideshowAction::decreaseInterval;
    case SlideshowCommand::zoomIn:
        return SlideshowAction::zoomIn;
    case SlideshowCommand::zoomOut:
        return SlideshowAction::zoomOut;
    case SlideshowCommand::resetZoom:
        return SlideshowAction::resetZoom;
    case SlideshowCommand::toggleSortMode:
        return SlideshowAction::toggleSortMode;
    case SlideshowCommand::stop:
        break;
    }
    return std::nullopt;
}

void SlideshowActionDispatch::apply(SlideshowViewModel &viewModel, SlideshowAction action)
{
    switch (action) {
    case SlideshowAction::nextImage:
        viewModel.next();
        break;
    case SlideshowAction::previousImage:
        viewModel.previous();
        break;
    case SlideshowAction::increaseInterval:
        viewModel.increaseInterval();
        break;
    case SlideshowAction::decreaseInterval:
        viewModel.decreaseInterval();
        break;
    case SlideshowAction::toggleSortMode:
        viewModel.toggleSortMode();
        break;
    case SlideshowAction::toggleCrossFade:
        viewModel.toggleTransitions();
        break;
    case SlideshowAction::zoomIn:
        viewModel.zoomIn();
        break;
    case SlideshowAction::zoomOut:
        viewModel.zoomOut();
        break;
    case SlideshowAction::resetZoom:
        viewModel.resetZoom();
        break;
    case SlideshowAction::cycleImageFilter:
        viewModel.cycleImageFilter();
        break;
    case SlideshowAction::startStop:
    case SlideshowAction::toggleFullScreen:
    case SlideshowAction::showHelp:
    case SlideshowAction::exit:
    case SlideshowAction::moveToTrash:
        break;
    }
}

} // namespace sorvane
