#pragma once

#include <QRect>
#include <QString>

namespace sorvane {

// A display as the manager sees it: an identifier stable while it is connected,
// its name and its place on the desktop.
struct SlideshowScreen {
    quint32 id = 0;
    QString name;
    QRect geometry;

    bool operator==(const SlideshowScreen &) const = default;
};

} // namespace sorvane
