#include "views/TransitionGeometry.h"

#include "slideshow/TransitionLayers.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

namespace {

// Out-of-range numbers from QML draw the plain layer rather than anything undefined.
double unit(double value)
{
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 1.0;
}

QSizeF finite(QSizeF size)
{
    const auto f = [](double v) { return std::isfinite(v) ? v : 0.0; };
    return {f(size.width()), f(size.height())};
}

} // namespace

TransitionGeometry::TransitionGeometry(QObject *parent) : QObject(parent) { }

QVariantMap TransitionGeometry::layer(int style, double progress, int direction, QSizeF kenBurnsVector,
    double kenBurnsAmount, QSizeF outgoingKenBurnsVector, double outgoingKenBurnsAmount, bool isIncoming,
    QSizeF size) const
{
    TransitionMotion motion;
    const bool known = style >= 0 && style < static_cast<int>(allTransitionStyles.size());
    motion.style = known ? allTransitionStyles[static_cast<size_t>(style)] : TransitionStyle::none;
    motion.progress = unit(progress);
    motion.direction = direction == static_cast<int>(TransitionDirection::backward) ? TransitionDirection::backward
                                                                                    : TransitionDirection::forward;
    motion.kenBurnsVector = finite(kenBurnsVector);
    motion.kenBurnsAmount = unit(kenBurnsAmount);
    motion.outgoingKenBurnsVector = finite(outgoingKenBurnsVector);
    motion.outgoingKenBurnsAmount = unit(outgoingKenBurnsAmount);
    const QPointF offset = TransitionLayers::offset(motion, isIncoming, finite(size));
    return {
        {QStringLiteral("scale"), TransitionLayers::scale(motion, isIncoming)},
        {QStringLiteral("x"), offset.x()},
        {QStringLiteral("y"), offset.y()},
        {QStringLiteral("rotation"), TransitionLayers::rotation(motion, isIncoming)},
        {QStringLiteral("opacity"), TransitionLayers::opacity(motion, isIncoming)},
    };
}

} // namespace sorvane
