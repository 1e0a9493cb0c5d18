#pragma once

#include "slideshow/HostShell.h"

namespace sorvane {

// A host that offers nothing: trash is refused, motion is not reduced.
class NullHostShell final : public HostShell {
public:
    void moveToTrash(const ImageItem &item, TrashDone done) override;
    bool prefersReducedMotion() const override { return false; }
    bool showControlsAfterCommands() const override { return true; }
};

} // namespace sorvane
