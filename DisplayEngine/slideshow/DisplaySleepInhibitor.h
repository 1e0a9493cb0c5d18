#pragma once

namespace sorvane {

// Keeps the display awake while photos are showing. Failures (no session bus, no
// screen-saver service) are logged and otherwise ignored: the show goes on.
class DisplaySleepInhibitor {
public:
    virtual ~DisplaySleepInhibitor() = default;
    // Asks for the display to stay awake; a second call while held does nothing.
    virtual void inhibit() = 0;
    // Gives the display back; does nothing when not held.
    virtual void release() = 0;
};

} // namespace sorvane
