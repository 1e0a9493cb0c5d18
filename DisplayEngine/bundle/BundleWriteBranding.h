#pragma once

#include "media/OverlayCorner.h"

#include <QString>
#include <optional>

namespace sorvane {

// Who made the bundle, as an export asks for it: written to the manifest's
// branding section, with the logo copied in as assets/branding/logo.png.
struct BundleWriteBranding {
    std::optional<QString> displayName;
    std::optional<QString> logoFile; // any image file; converted to PNG
    std::optional<bool> holding;
    bool overlayEnabled = false;
    OverlayCorner overlayCorner = OverlayCorner::bottomRight;
    double overlaySizePercent = 6.0;
    double overlayOpacity = 0.6;
    double overlayMarginPercent = 2.0;
};

} // namespace sorvane
