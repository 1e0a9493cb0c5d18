#pragma once

#include "slideshow/SlideshowManager.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sorvane {

// The host's slideshow manager as a QML type (scope and filter notices, global settings).
struct SlideshowManagerType {
    Q_GADGET
    QML_FOREIGN(sorvane::SlideshowManager)
    QML_NAMED_ELEMENT(SlideshowManager)
    QML_UNCREATABLE("The host application owns the slideshow manager.")
};

} // namespace sorvane
