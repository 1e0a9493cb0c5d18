#pragma once

#include "media/ImageItem.h"

#include <QList>

namespace sorvane {

class ImageClaimTracker;

// Where "next" and "previous" lead among a show's items.
class SlideshowStepRule {
public:
    // One step from `index` among `count` items; at either end it wraps when
    // looping, else stays.
    static int plainStep(int index, int count, bool forward, bool loop);
    // Plain steps until an item whose file no other window claims, which is then
    // claimed. Stays at `index` when the end is reached without looping or when the
    // steps come full circle (every other file is on another window).
    static int freeStep(const QList<ImageItem> &items, int index, bool forward, bool loop, ImageClaimTracker &claims);
};

} // namespace sorvane
