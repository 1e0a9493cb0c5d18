#include "slideshow/SlideshowScreenPlan.h"

#include <algorithm>

namespace sorvane {

QList<SlideshowScreen> SlideshowScreenPlan::ordered(
    const QList<SlideshowScreen> &screens, std::optional<quint32> firstScreenId)
{
    QList<SlideshowScreen> result = screens;
    std::stable_sort(result.begin(), result.end(), [](const SlideshowScreen &a, const SlideshowScreen &b) {
        const QPoint pa = a.geometry.topLeft();
        const QPoint pb = b.geometry.topLeft();
        return pa.x() != pb.x() ? pa.x() < pb.x() : pa.y() < pb.y();
    });
    if (firstScreenId) {
        const auto chosen = std::find_if(
            result.begin(), result.end(), [&](const SlideshowScreen &screen) { return screen.id == *firstScreenId; });
        if (chosen != result.end())
            std::rotate(result.begin(), chosen, chosen + 1);
    }
    return result;
}

QList<SlideshowScreen> SlideshowScreenPlan::screensToOpen(const Input &input)
{
    const QList<SlideshowScreen> screens = ordered(input.screens, input.firstScreenId);
    if (screens.isEmpty())
        return {};
    const qsizetype room
        = input.limitToScreenCount ? std::max<qsizetype>(0, screens.size() - input.running) : screens.size();
    if (room == 0)
        return {};

    if (input.target == SlideshowLaunchRequest::MonitorTarget::current) {
        if (input.currentScreenId) {
            for (const SlideshowScreen &screen : screens) {
                if (screen.id == *input.currentScreenId)
                    return {screen};
            }
        }
        return {screens.first()};
    }

    QList<SlideshowScreen> result;
    for (const SlideshowScreen &screen : screens) {
        if (result.size() == room)
            break;
        if (input.limitToScreenCount && input.occupied.contains(screen.id))
            continue;
        result.append(screen);
    }
    return result;
}

} // namespace sorvane
