#pragma once

#include "bundle/BundlePerScreenPreference.h"
#include "slideshow/ControlScope.h"
#include "slideshow/SyncMode.h"

#include <optional>
#include <vector>

namespace sorvane {

// A bundle's multi-screen suggestions, typed.
struct BundleDisplayPreferences {
    std::optional<qint64> preferredScreenCount;
    ControlScope preferredControlScope = ControlScope::focusedOnly;
    SyncMode preferredSyncMode = SyncMode::synchronized;
    std::optional<double> preferredPhaseDelaySeconds;
    std::optional<bool> preferDuplicateAvoidance;
    std::vector<BundlePerScreenPreference> preferredPerScreen;

    bool operator==(const BundleDisplayPreferences &) const = default;
};

} // namespace sorvane
