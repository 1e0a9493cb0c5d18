#pragma once

#include "bundle/BundleError.h"
#include "bundle/BundleIntegrity.h"
#include "bundle/BundleReport.h"
#include "bundle/OpenedBundle.h"

#include <memory>
#include <optional>
#include <vector>

namespace sorvane {

// Exactly one of `bundle` and `error` is set; `integrity` always is.
struct BundleOpenResult {
    std::shared_ptr<OpenedBundle> bundle;
    std::optional<BundleError> error;
    std::shared_ptr<BundleIntegrity> integrity;
    // Reports found before a failure; empty when the open succeeded (they are in the bundle then).
    std::vector<BundleReport> standaloneReports;

    bool ok() const { return bundle != nullptr; }
    const std::vector<BundleReport> &reports() const { return bundle ? bundle->mutableReports : standaloneReports; }
};

} // namespace sorvane
