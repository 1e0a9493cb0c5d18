#include "slideshow/TransitionStyle.h"

namespace sorvane {

namespace {

struct StyleText {
    const char *raw;
    const char *label;
    const char *description;
    const char *icon;
};

// In the enumeration's order.
constexpr StyleText texts[] = {
    {"none", "None", "Hard cut between photos.", "rectangle"},
    {"crossFade", "Cross-fade", "One photo dissolves into the next.", "circle.righthalf.fill"},
    {"kenBurns", "Ken Burns", "Slow drift and zoom across each photo.", "arrow.up.left.and.arrow.down.right"},
    {"slide", "Slide", "Photos slide in from the side.", "arrow.left.arrow.right"},
    {"zoom", "Zoom", "Photos settle in from slightly enlarged.", "plus.magnifyingglass"},
    {"flip", "Flip", "Photos flip over like a card.", "arrow.2.squarepath"},
    {"random", "Random", "A different motion on every photo.", "shuffle"},
};
static_assert(std::size(texts) == allTransitionStyles.size());

const StyleText &textOf(TransitionStyle style)
{
    return texts[size_t(style)];
}

} // namespace

QString toRaw(TransitionStyle style)
{
    return QString::fromLatin1(textOf(style).raw);
}

template <> std::optional<TransitionStyle> fromRaw<TransitionStyle>(QStringView raw)
{
    for (const TransitionStyle style : allTransitionStyles) {
        if (raw == QLatin1StringView(textOf(style).raw))
            return style;
    }
    return std::nullopt;
}

QString label(TransitionStyle style)
{
    return QString::fromUtf8(textOf(style).label);
}
QString description(TransitionStyle style)
{
    return QString::fromUtf8(textOf(style).description);
}
QString iconName(TransitionStyle style)
{
    return QString::fromLatin1(textOf(style).icon);
}

} // namespace sorvane
