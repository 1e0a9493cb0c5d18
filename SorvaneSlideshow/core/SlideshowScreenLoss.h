#pragma once

#include <QList>
#include <QUuid>

namespace sorvane {

// What happens to the windows of a display that went away: they close while a window
// remains on another display; otherwise one of them moves to a display still there, so that
// the show goes on, and any others close.
class SlideshowScreenLoss {
public:
    struct Window {
        QUuid id;
        quint32 screen = 0; // the display the window was put on
    };
    struct Outcome {
        QList<QUuid> close;
        QList<QUuid> move; // to a display still connected
        bool operator==(const Outcome &) const = default;
    };

    static Outcome afterRemoval(const QList<Window> &windows, quint32 removed, bool anotherScreenLeft);
};

} // namespace sorvane
