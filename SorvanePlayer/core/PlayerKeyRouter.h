#pragma once

#include "core/PlayerStyle.h"

#include <QtCore/qnamespace.h>

#include <functional>
#include <optional>

namespace sorvane {

// What the viewer can ask of the player; keys and panel buttons both end in one of these.
enum class PlayerAction { exit, togglePause, next, previous, stylePhotoWall, styleMemoryTable, styleClassic };

inline std::optional<PlayerStyle> styleOf(PlayerAction action)
{
    switch (action) {
    case PlayerAction::stylePhotoWall:
        return PlayerStyle::photoWall;
    case PlayerAction::styleMemoryTable:
        return PlayerStyle::memoryTable;
    case PlayerAction::styleClassic:
        return PlayerStyle::classic;
    default:
        return std::nullopt;
    }
}

inline PlayerAction styleAction(PlayerStyle style)
{
    switch (style) {
    case PlayerStyle::photoWall:
        return PlayerAction::stylePhotoWall;
    case PlayerStyle::memoryTable:
        return PlayerAction::styleMemoryTable;
    case PlayerStyle::classic:
        return PlayerAction::styleClassic;
    }
    return PlayerAction::styleClassic;
}

// Turns key presses into player actions. The host feeds it every key-down of the
// application and swallows the event when handleKey() returns true.
class PlayerKeyRouter {
public:
    using Action = PlayerAction;

    std::function<void()> onExit;
    std::function<void()> onTogglePause;
    std::function<void()> onNext;
    std::function<void()> onPrevious;
    std::function<void(PlayerStyle)> onStyle;

    // The action a key stands for, or nothing when the key is not ours.
    static std::optional<Action> actionFor(int key, Qt::KeyboardModifiers modifiers);

    // Runs the key's handler; true when the key was ours, even if no handler is set,
    // so that a recognised key never leaks through to other windows.
    bool handleKey(int qtKey, Qt::KeyboardModifiers modifiers) const;

    // Runs the handler of an action (unset handlers do nothing).
    void perform(Action action) const;
};

} // namespace sorvane
