#pragma once

namespace sorvane {

// libvips must be started once per process before any call; every codec class asks here.
class VipsRuntime {
public:
    // True when libvips is ready. Safe to call from any thread, any number of times.
    static bool ensureStarted();
    // The most recent libvips error text on this thread's behalf, then cleared.
    static const char *takeError();
};

} // namespace sorvane
