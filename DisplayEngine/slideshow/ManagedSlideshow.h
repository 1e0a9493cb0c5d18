#pragma once

#include "slideshow/SlideshowScreen.h"

#include <QDateTime>
#include <QSet>
#include <QUuid>

#include <memory>
#include <optional>

namespace sorvane {

class SlideshowViewModel;
class SlideshowWindowController;

// One running slideshow: its view model and window, keyed by the view model's id.
struct ManagedSlideshow {
    QUuid id;
    std::shared_ptr<SlideshowViewModel> viewModel;
    std::shared_ptr<SlideshowWindowController> windowController;
    std::optional<SlideshowScreen> screen;
    QSet<QUuid> seenImages; // ids of the items this window has shown
    QDateTime createdAt;
};

} // namespace sorvane
