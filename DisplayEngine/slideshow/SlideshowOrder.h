#pragma once

#include "media/ImageItem.h"
#include "slideshow/SortMode.h"

#include <QList>

namespace sorvane {

// Puts a slideshow's items in the order of a sort mode. Every order is stable.
class SlideshowOrder {
public:
    // Random order is a uniform shuffle drawn from `seed`; path order is natural
    // (see NaturalPathOrder); date orders take the item's metadata dates when it has
    // them, else the file's times, with equal dates ordered by path.
    static QList<ImageItem> ordered(QList<ImageItem> items, SortMode mode, quint64 seed);
    // Uniform in place: every permutation equally likely for a given stream of draws.
    static void shuffle(QList<ImageItem> &items, quint64 seed);

private:
    static QList<ImageItem> byPath(QList<ImageItem> items);
    static QList<ImageItem> byDate(QList<ImageItem> items, bool creation);
};

} // namespace sorvane
