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

    // The action a key stands for, or nothing when the key is not ours.
    static std::optional<Action> actionFor(int key, Qt::KeyboardModifiers modifiers);

    // Runs the key's handler; true when the key was ours, even if no handler is set,
    // so that a recognised key never leaks through to other windows.
    bool handleKey(int qtKey, Qt::KeyboardModifiers modifiers) const;
};

} // namespace sorvane
