#include "slideshow/TransitionLayers.h"

namespace sorvane {

namespace {

// The Ken Burns drift of the layer: the incoming slide's own, or the outgoing one's as it left.
QSizeF vectorOf(const TransitionMotion &m, bool isIncoming)
{
    return isIncoming ? m.kenBurnsVector : m.outgoingKenBurnsVector;
}

double amountOf(const TransitionMotion &m, bool isIncoming)
{
    return isIncoming ? m.kenBurnsAmount : m.outgoingKenBurnsAmount;
}

} // namespace

double TransitionLayers::scale(const TransitionMotion &m, bool isIncoming)
{
    switch (m.style) {
    case TransitionStyle::zoom:
        return isIncoming ? 1 + (1 - m.progress) * zoomInStart : 1;
    case TransitionStyle::kenBurns:
        return 1 + amountOf(m, isIncoming) * (kenBurnsMaxScale - 1);
    default:
        return 1;
    }
}

QPointF TransitionLayers::offset(const TransitionMotion &m, bool isIncoming, QSizeF size)
{
    switch (m.style) {
    case TransitionStyle::kenBurns: {
        const QSizeF v = vectorOf(m, isIncoming);
        const double a = amountOf(m, isIncoming);
        return {size.width() * v.width() * kenBurnsDrift * a, size.height() * v.height() * kenBurnsDrift * a};
    }
    case TransitionStyle::slide: {
        // Forward, the new slide enters from the right and the old one leaves to the left.
        const double sense = m.direction == TransitionDirection::backward ? -1 : 1;
        return isIncoming ? QPointF(sense * size.width() * (1 - m.progress), 0)
                          : QPointF(-sense * size.width() * m.progress, 0);
    }
    default:
        return {0, 0};
    }
}

double TransitionLayers::rotation(const TransitionMotion &m, bool isIncoming)
{
    if (m.style != TransitionStyle::flip)
        return 0;
    return isIncoming ? (1 - m.progress) * flipDegrees : m.progress * -flipDegrees;
}

double TransitionLayers::opacity(const TransitionMotion &m, bool isIncoming)
{
    switch (m.style) {
    case TransitionStyle::crossFade:
    case TransitionStyle::kenBurns:
    case TransitionStyle::zoom:
    case TransitionStyle::random:
        return isIncoming ? m.progress : 1 - m.progress;
    case TransitionStyle::slide:
        return 1;
    case TransitionStyle::flip:
        // Each face is seen for half the turn.
        return (m.progress >= 0.5) == isIncoming ? 1 : 0;
    case TransitionStyle::none:
        return isIncoming ? 1 : 0;
    }
    return 1;
}

} // namespace sorvane
