#pragma once

#include "slideshow/SlideshowLaunchRequest.h"
#include "slideshow/SlideshowScreen.h"

#include <QList>
#include <QSet>

#include <optional>

namespace sorvane {

// Which displays a launch opens windows on, in the order they open: a pure rule, so
// the manager's choice of displays is tested without any.
class SlideshowScreenPlan {
public:
    struct Input {
        SlideshowLaunchRequest::MonitorTarget target = SlideshowLaunchRequest::MonitorTarget::current;
        QList<SlideshowScreen> screens;
        std::optional<quint32> currentScreenId; // the key window's display
        std::optional<quint32> firstScreenId; // the display the user made the first
        bool limitToScreenCount = true;
        qsizetype running = 0; // windows already running
        QSet<quint32> occupied; // displays that already show one
    };

    // The first display (`firstScreenId` when connected, else the leftmost, topmost
    // one), then the others left to right, top to bottom.
    static QList<SlideshowScreen> ordered(const QList<SlideshowScreen> &screens, std::optional<quint32> firstScreenId);
    // The displays to open on. With the limit, running and new windows together never
    // outnumber the displays, and "all" skips displays that already show one.
    static QList<SlideshowScreen> screensToOpen(const Input &input);
};

} // namespace sorvane
