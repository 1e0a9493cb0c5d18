#pragma once

#include "DisplayEngine/slideshow/SlideshowTestHost.h"
#include "QmlHarness.h"

namespace sorvane::test {

// QML `source` with a running view model (on fake time) as its required `viewModel`.
struct SlideshowScene {
    SlideshowScene(QSize size, const QString &source, QList<ImageItem> items, const SlideshowSettings &settings)
        : model(rig.make(std::move(items), settings))
    {
        model->start();
        harness = std::make_unique<QmlHarness>(
            size, source, QVariantMap {{QStringLiteral("viewModel"), QVariant::fromValue(model.get())}});
    }

    SlideshowRig rig;
    std::unique_ptr<SlideshowViewModel> model;
    std::unique_ptr<QmlHarness> harness;
};

} // namespace sorvane::test
