#include "slideshow/SlideshowHotkeyOverlay.h"

#include <QStringList>

namespace sorvane {

QString SlideshowHotkeyOverlay::keyText(const KeyBindings &bindings, SlideshowAction action)
{
    const auto found = bindings.constFind(toRaw(action));
    return found == bindings.constEnd() ? QStringLiteral("Not Set") : found->displayText();
}

std::vector<ShortcutRow> SlideshowHotkeyOverlay::rows(const KeyBindings &bindings)
{
    using A = SlideshowAction;
    const struct {
        std::vector<A> actions;
        const char *description;
    } lines[] = {
        {{A::previousImage, A::nextImage}, "Navigate photos"},
        {{A::startStop}, "Play/Pause"},
        {{A::zoomIn, A::zoomOut}, "Zoom in/out"},
        {{A::exit}, "Exit slideshow"},
        {{A::toggleSortMode}, "Toggle Shuffle / In order"},
        {{A::toggleCrossFade}, "Toggle transitions on/off"},
        {{A::cycleImageFilter}, "Cycle photo filter"},
        {{A::toggleFullScreen}, "Toggle full-screen"},
    };
    std::vector<ShortcutRow> rows;
    for (const auto &line : lines) {
        QStringList keys;
        for (const A action : line.actions)
            keys.append(keyText(bindings, action));
        rows.push_back({keys.join(QStringLiteral(" / ")), QString::fromLatin1(line.description)});
    }
    return rows;
}

QString SlideshowHotkeyOverlay::footer(const KeyBindings &bindings)
{
    return QStringLiteral("Press **") + keyText(bindings, SlideshowAction::showHelp)
        + QStringLiteral("** anytime for full keyboard shortcuts");
}

} // namespace sorvane
