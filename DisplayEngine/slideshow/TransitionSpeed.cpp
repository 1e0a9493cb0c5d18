#include "slideshow/TransitionSpeed.h"

#include <cmath>

namespace sorvane {

QString toRaw(TransitionSpeed speed)
{
    switch (speed) {
    case TransitionSpeed::slow:
        return QStringLiteral("slow");
    case TransitionSpeed::normal:
        return QStringLiteral("normal");
    case TransitionSpeed::fast:
        return QStringLiteral("fast");
    }
    return {};
}

QString label(TransitionSpeed speed)
{
    const QString raw = toRaw(speed);
    return raw.left(1).toUpper() + raw.mid(1);
}

double seconds(TransitionSpeed speed)
{
    switch (speed) {
    case TransitionSpeed::slow:
        return 1.0;
    case TransitionSpeed::normal:
        return 0.6;
    case TransitionSpeed::fast:
        return 0.3;
    }
    return 0.6;
}

TransitionSpeed speedForDuration(double duration)
{
    const auto distance = [duration](TransitionSpeed speed) { return std::abs(seconds(speed) - duration); };
    // Strictly nearer only: ties stay with the slower preset.
    const TransitionSpeed slower = distance(TransitionSpeed::normal) < distance(TransitionSpeed::slow)
        ? TransitionSpeed::normal
        : TransitionSpeed::slow;
    return distance(TransitionSpeed::fast) < distance(slower) ? TransitionSpeed::fast : slower;
}

} // namespace sorvane
