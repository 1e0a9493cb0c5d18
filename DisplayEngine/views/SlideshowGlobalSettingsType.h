#pragma once

#include "slideshow/SlideshowGlobalSettings.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sorvane {

// The settings every slideshow window shares (control scope, Escape, sync) as a QML type.
struct SlideshowGlobalSettingsType {
    Q_GADGET
    QML_FOREIGN(sorvane::SlideshowGlobalSettings)
    QML_NAMED_ELEMENT(SlideshowGlobalSettings)
    QML_UNCREATABLE("The slideshow manager owns the global settings.")
};

} // namespace sorvane
