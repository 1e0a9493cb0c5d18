#pragma once

#include "core/PlayerStyle.h"

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

// The viewer's actions and who answers them. Keys and panel buttons share it,
// so both lead to the same handlers in the same way.
struct PlayerActionHandlers {
    std::function<void()> onExit;
    std::function<void()> onTogglePause;
    std::function<void()> onNext;
    std::function<void()> onPrevious;
    std::function<void(PlayerStyle)> onStyle;

    // Runs the handler of an action (unset handlers do nothing).
    void perform(PlayerAction action) const;
};

} // namespace sorvane
