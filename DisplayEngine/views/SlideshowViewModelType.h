#pragma once

#include "slideshow/SlideshowViewModel.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sorvane {

// Makes the engine's slideshow view model a QML type without teaching the engine about QML:
// views declare `required property SlideshowViewModel viewModel` and the manager makes the model.
struct SlideshowViewModelType {
    Q_GADGET
    QML_FOREIGN(sorvane::SlideshowViewModel)
    QML_NAMED_ELEMENT(SlideshowViewModel)
    QML_UNCREATABLE("The slideshow manager makes the view models.")
};

} // namespace sorvane
