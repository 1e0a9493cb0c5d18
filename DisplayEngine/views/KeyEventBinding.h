#pragma once

#include "slideshow/KeyBinding.h"

#include <QtCore/qnamespace.h>

#include <optional>

class QKeyEvent;

namespace sorvane {

// A toolkit key press in the stored form of a binding: the key as text (letters in lower
// case, Shift going to the modifier word instead; the arrows "→" "←" "↑" "↓", Backspace
// and Delete as U+007F, "escape", " " for Space) and the modifier word (Ctrl is the stored
// Command flag, Alt Option, Meta Control). Keys that type nothing and have no name here,
// and modifier keys pressed alone, give nothing.
class KeyEventBinding {
public:
    static std::optional<KeyBinding> fromKeyEvent(const QKeyEvent &event);
    static std::optional<KeyBinding> fromKey(int qtKey, Qt::KeyboardModifiers modifiers);
    static quint64 modifierWord(Qt::KeyboardModifiers modifiers);
};

} // namespace sorvane
