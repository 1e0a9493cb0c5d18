#include "core/SlideshowScreenLoss.h"

namespace sorvane {

SlideshowScreenLoss::Outcome SlideshowScreenLoss::afterRemoval(
    const QList<Window> &windows, quint32 removed, bool anotherScreenLeft)
{
    Outcome outcome;
    qsizetype elsewhere = 0;
    for (const Window &window : windows)
        elsewhere += window.screen != removed ? 1 : 0;
    for (const Window &window : windows) {
        if (window.screen != removed)
            continue;
        if (elsewhere == 0 && anotherScreenLeft) {
            outcome.move.append(window.id);
            ++elsewhere;
        } else {
            outcome.close.append(window.id);
        }
    }
    return outcome;
}

} // namespace sorvane
