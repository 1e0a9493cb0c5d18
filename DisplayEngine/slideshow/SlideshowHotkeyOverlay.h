#pragma once

#include "slideshow/KeyBinding.h"
#include "slideshow/ShortcutRow.h"

#include <vector>

namespace sorvane {

// The texts of the keyboard-shortcut overlay for the bindings in force: the main actions,
// each shown with its current key or "Not Set", and a footer naming the key that shows
// every shortcut. The view draws these and calls back on "Got it!".
class SlideshowHotkeyOverlay {
public:
    static QString title() { return QStringLiteral("Keyboard Shortcuts"); }
    static QString titleSymbol() { return QStringLiteral("keyboard"); }
    static QString footerSymbol() { return QStringLiteral("questionmark.circle"); }
    static QString dismissLabel() { return QStringLiteral("Got it!"); }

    static std::vector<ShortcutRow> rows(const KeyBindings &bindings);
    // With ** around the key, which the view shows in bold.
    static QString footer(const KeyBindings &bindings);
    // The key text of one action, or "Not Set".
    static QString keyText(const KeyBindings &bindings, SlideshowAction action);
};

} // namespace sorvane
