#pragma once

#include "bundle/BundleWritePhase.h"

#include <QString>
#include <optional>

namespace sorvane {

struct BundleWriteProgress {
    BundleWritePhase phase = BundleWritePhase::scanning;
    qint64 completed = 0; // items done in this phase
    qint64 total = 0; // items in this phase
    std::optional<QString> currentItem;
    // Source bytes done and to do in this phase, for rates and time left (0 when not counted).
    qint64 completedBytes = 0;
    qint64 totalBytes = 0;
};

} // namespace sorvane
