#pragma once

#include <QUuid>
#include <QtGlobal>

namespace sorvane {

// One recorded change of a wall: `incoming` took the place of `outgoing` in `slot`.
struct CollageSlotSwap {
    qsizetype slot = 0;
    QUuid outgoing;
    QUuid incoming;

    bool operator==(const CollageSlotSwap &) const = default;
};

} // namespace sorvane
