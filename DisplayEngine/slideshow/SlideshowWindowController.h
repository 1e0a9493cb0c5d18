#pragma once

#include "slideshow/SlideshowScreen.h"

#include <optional>

namespace sorvane {

// One slideshow window as the manager reaches it, so that the manager is tested
// without a display. The window reports focus and closing back to the manager.
class SlideshowWindowController {
public:
    virtual ~SlideshowWindowController() = default;
    virtual void show(bool fullScreen) = 0;
    virtual void setFullScreen(bool fullScreen) = 0;
    virtual bool isFullScreen() const = 0;
    // Closes the window; the manager has already forgotten it.
    virtual void close() = 0;
    virtual std::optional<SlideshowScreen> screen() const = 0;
};

} // namespace sorvane
