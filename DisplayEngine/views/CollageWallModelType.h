#pragma once

#include "collage/CollageWallModel.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sorvane {

// Makes the engine's wall model a QML type without teaching the engine about QML:
// views declare `required property CollageWallModel wall` and the host creates the model.
struct CollageWallModelType {
    Q_GADGET
    QML_FOREIGN(sorvane::CollageWallModel)
    QML_NAMED_ELEMENT(CollageWallModel)
    QML_UNCREATABLE("The host makes the wall model.")
};

} // namespace sorvane
