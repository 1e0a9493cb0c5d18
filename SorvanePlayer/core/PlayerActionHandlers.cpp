#include "core/PlayerActionHandlers.h"

namespace sorvane {

namespace {

// A handler may tear down its owner (exit does), so it runs from a copy.
void run(const std::function<void()> &handler)
{
    if (auto copy = handler)
        copy();
}

} // namespace

void PlayerActionHandlers::perform(PlayerAction action) const
{
    switch (action) {
    case PlayerAction::exit:
        run(onExit);
        return;
    case PlayerAction::togglePause:
        run(onTogglePause);
        return;
    case PlayerAction::next:
        run(onNext);
        return;
    case PlayerAction::previous:
        run(onPrevious);
        return;
    case PlayerAction::stylePhotoWall:
    case PlayerAction::styleMemoryTable:
    case PlayerAction::styleClassic:
        if (auto copy = onStyle)
            copy(*styleOf(action));
        return;
    }
}

} // namespace sorvane
