#include "slideshow/SlideshowTransitionChoice.h"

#include "media/ImageItem.h"

#include <array>

namespace sorvane {

namespace {

constexpr std::array<TransitionStyle, 4> randomPool {
    TransitionStyle::kenBurns, TransitionStyle::slide, TransitionStyle::zoom, TransitionStyle::flip};

} // namespace

TransitionStyle SlideshowTransitionChoice::choose(const Input &input, quint64 draw)
{
    // Animated images play their own frames; blending two of them looks broken.
    if (input.incoming.animationType() != AnimationType::none
        || (input.outgoing && input.outgoing->animationType() != AnimationType::none))
        return TransitionStyle::none;
    if (input.outgoing && input.outgoing->id() == input.incoming.id())
        return TransitionStyle::none;
    TransitionStyle style = input.setting;
    if (style != TransitionStyle::none && (input.budgetFallback || input.reduceMotion))
        return TransitionStyle::crossFade;
    if (style == TransitionStyle::random)
        style = randomPool.empty() ? TransitionStyle::crossFade : randomPool[draw % randomPool.size()];
    return style;
}

} // namespace sorvane
