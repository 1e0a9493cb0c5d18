#pragma once

#include "bundle/BundleDisplayPreferences.h"
#include "bundle/BundleManifest.h"
#include "bundle/BundlePlaybackPreferences.h"
#include "bundle/BundleReport.h"
#include "media/OverlayCorner.h"

#include <vector>

namespace sorvane {

// Turns the manifest's strings into typed preferences. An unrecognised value
// never fails: it becomes the default and leaves one report, in field order.
class BundleManifestMapper {
public:
    static BundlePlaybackPreferences playback(const BundleManifest &manifest, std::vector<BundleReport> &reports);
    static BundleDisplayPreferences display(const BundleManifest &manifest, std::vector<BundleReport> &reports);
    static OverlayCorner overlayCorner(const BundleManifest &manifest, std::vector<BundleReport> &reports);
};

} // namespace sorvane
