#pragma once

#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// The brand logo drawn in a corner of every slide; `visible` is false when the
// overlay is off or its logo failed a check.
struct BrandOverlayView {
    Q_GADGET
    QML_VALUE_TYPE(brandOverlayView)
    Q_PROPERTY(bool visible MEMBER visible)
    Q_PROPERTY(QUrl source MEMBER source)
    Q_PROPERTY(double opacity MEMBER opacity)

public:
    bool visible = false;
    QUrl source;
    double opacity = 0.6;

    bool operator==(const BrandOverlayView &) const = default;
};

} // namespace sorvane
