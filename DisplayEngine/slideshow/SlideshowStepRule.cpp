#include "slideshow/SlideshowStepRule.h"

#include "slideshow/ImageClaimTracker.h"

namespace sorvane {

int SlideshowStepRule::plainStep(int index, int count, bool forward, bool loop)
{
    if (count <= 0)
        return index;
    if (forward) {
        if (index < count - 1)
            return index + 1;
        return loop ? 0 : index;
    }
    if (index >= 1)
        return index - 1;
    return loop ? count - 1 : index;
}

int SlideshowStepRule::freeStep(
    const QList<ImageItem> &items, int index, bool forward, bool loop, ImageClaimTracker &claims)
{
    const int count = int(items.size());
    int at = index;
    // Candidates are produced one at a time under the tracker's lock, so a step looks
    // only as far as the first free item.
    const qsizetype found = claims.claimFirstFree([&]() -> std::optional<std::pair<qsizetype, QUrl>> {
        const int candidate = plainStep(at, count, forward, loop);
        if (candidate == at || candidate == index)
            return std::nullopt;
        at = candidate;
        return std::make_pair(qsizetype(candidate), items.at(candidate).url());
    });
    return found < 0 ? index : int(found);
}

} // namespace sorvane
