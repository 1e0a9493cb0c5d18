#pragma once

#include <QString>

namespace sorvane {

enum class BundleWriteErrorCode {
    noSourceMedia,
    destinationUnwritable,
    playerPayloadMissing,
    playerTooOldForBundle,
    writeFailed,
    cancelled,
};

QString toString(BundleWriteErrorCode code);

} // namespace sorvane
