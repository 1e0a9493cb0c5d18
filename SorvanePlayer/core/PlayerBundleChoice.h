#pragma once

#include <QString>

namespace sorvane {

// Which bundle the player opens, or that it has none and waits on a blank screen.
struct PlayerBundleChoice {
    // Absolute, without a trailing slash; empty when holding.
    QString bundleRoot;
    // No bundle.json where it was looked for: show nothing rather than fail.
    bool hold = true;
    // What the caller logs about the choice, exactly as shown.
    QString logLine;
};

} // namespace sorvane
