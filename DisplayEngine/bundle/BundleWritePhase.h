#pragma once

#include <QString>

namespace sorvane {

// The phases of an export, in the order a write passes through them.
enum class BundleWritePhase {
    scanning,
    hashing,
    writingDerivatives,
    copyingOriginals,
    copyingPlayer,
    writingManifest,
    finalizing
};

QString toString(BundleWritePhase phase);

} // namespace sorvane
