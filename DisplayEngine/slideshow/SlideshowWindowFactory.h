#pragma once

#include "slideshow/SlideshowScreen.h"
#include "slideshow/SlideshowWindowController.h"

#include <QList>

#include <memory>
#include <optional>

namespace sorvane {

class SlideshowViewModel;

// What the manager asks of the application's windowing: the displays, the display of
// the key window, and a window for a view model on a display.
class SlideshowWindowFactory {
public:
    virtual ~SlideshowWindowFactory() = default;
    virtual QList<SlideshowScreen> screens() const = 0;
    // The display of the key window; nothing when no window has focus.
    virtual std::optional<quint32> currentScreenId() const = 0;
    virtual std::unique_ptr<SlideshowWindowController> createWindow(
        SlideshowViewModel &viewModel, const SlideshowScreen &screen)
        = 0;
};

} // namespace sorvane
