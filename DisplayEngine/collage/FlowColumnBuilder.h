#pragma once

#include "collage/FlowOrientation.h"
#include "collage/FlowScrollColumn.h"

#include <QHash>
#include <QList>
#include <QUuid>

#include <vector>

namespace sorvane {

// Groups a seeded wall's slots into the strips the view draws.
class FlowColumnBuilder {
public:
    // One strip per column 0 ..< `columns`, each with its slots in slot order. A slot
    // whose strip is out of range, or beyond the shorter of `slots` and `flowColumnOf`,
    // is left out. Aspects come from `flowAspect`, 1.0 for items not yet measured.
    static std::vector<FlowScrollColumn> build(const QList<QUuid> &slots, const QList<int> &flowColumnOf,
        const QHash<QUuid, double> &flowAspect, int columns, double width, double height, FlowOrientation orientation);
};

} // namespace sorvane
