#pragma once

#include "core/PlayerActionHandlers.h"

#include <QtCore/qnamespace.h>

#include <optional>

namespace sorvane {

// Turns key presses into player actions. The host feeds it every key-down of the
// application and swallows the event when handleKey() returns true.
class PlayerKeyRouter : public PlayerActionHandlers {
public:
    using Action = PlayerAction;

    // The action a key stands for, or nothing when the key is not ours. `nativeScanCode`
    // (QKeyEvent::nativeScanCode(), 0 when unknown) names the physical key: Shift turns
    // the 1 key into '!' on one layout and '&' into 1 on another, and the style keys
    // are meant by where they sit, not by the character they type.
    static std::optional<Action> actionFor(int key, Qt::KeyboardModifiers modifiers, quint32 nativeScanCode = 0);

    // The digit 1, 2 or 3 of the main row that this platform scan code stands for, else 0.
    static int digitRowKey(quint32 nativeScanCode);

    // Runs the key's handler; true when the key was ours, even if no handler is set,
    // so that a recognised key never leaks through to other windows.
    bool handleKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 nativeScanCode = 0) const;
};

} // namespace sorvane
