#include "slideshow/SlideshowAction.h"

namespace sorvane {

namespace {

// In the enumeration's order.
constexpr const char *labels[] = {"Toggle Full-Screen", "Start/Stop", "Next Image", "Previous Image",
    "Increase Interval", "Decrease Interval", "Toggle Random/Sequential", "Toggle Cross-Fade", "Zoom In", "Zoom Out",
    "Reset Zoom", "Show Keyboard Shortcuts", "Exit Slideshow", "Move to Trash", "Cycle Image Filter"};
static_assert(std::size(labels) == allSlideshowActions.size());

} // namespace

QString toRaw(SlideshowAction action)
{
    return QString::fromLatin1(labels[size_t(action)]);
}

template <> std::optional<SlideshowAction> fromRaw<SlideshowAction>(QStringView raw)
{
    for (const SlideshowAction action : allSlideshowActions) {
        if (raw == QLatin1StringView(labels[size_t(action)]))
            return action;
    }
    return std::nullopt;
}

} // namespace sorvane
