#pragma once

#include "media/ImageItem.h"

#include <QPointF>

namespace sorvane {

// One photo lying on the Scatter table.
struct CollageDrop {
    ImageItem item;
    // The photo's centre as a fraction of the wall's width and height.
    QPointF unit;
    double rotation = 0.0; // degrees
    double scale = 1.0; // multiplier of the base photo size

    bool operator==(const CollageDrop &) const = default;
};

} // namespace sorvane
