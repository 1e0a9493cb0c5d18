#pragma once

#include <QObject>
#include <QSizeF>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// The transition functions for QML: where a slideshow layer stands at a point of a transition.
//   TransitionGeometry.layer(style, progress, direction, vector, amount, outVector, outAmount,
//                            isIncoming, Qt.size(width, height))
// gives {scale, x, y, rotation, opacity}: x and y in the layer's units, rotation in degrees about
// the vertical axis. Styles and directions are Slideshow.TransitionStyle and .TransitionDirection.
class TransitionGeometry : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit TransitionGeometry(QObject *parent = nullptr);

    Q_INVOKABLE QVariantMap layer(int style, double progress, int direction, QSizeF kenBurnsVector,
        double kenBurnsAmount, QSizeF outgoingKenBurnsVector, double outgoingKenBurnsAmount, bool isIncoming,
        QSizeF size) const;
};

} // namespace sorvane
