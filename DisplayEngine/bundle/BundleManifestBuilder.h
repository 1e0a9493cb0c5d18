#pragma once

#include "bundle/BundleDisplayJSON.h"
#include "bundle/BundleDisplayPreferences.h"
#include "bundle/BundlePlaybackJSON.h"
#include "bundle/BundlePlaybackPreferences.h"

namespace sorvane {

// The writer's side of the manifest mapping: typed preferences back to the
// manifest's sections, with the same wire values the reader accepts.
class BundleManifestBuilder {
public:
    static BundlePlaybackJSON playback(const BundlePlaybackPreferences &preferences);
    static BundleDisplayJSON display(const BundleDisplayPreferences &preferences);
};

} // namespace sorvane
