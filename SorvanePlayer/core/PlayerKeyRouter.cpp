#include "core/PlayerKeyRouter.h"

namespace sorvane {

std::optional<PlayerAction> PlayerKeyRouter::actionFor(int key, Qt::KeyboardModifiers modifiers)
{
    // Escape always leaves, whatever else is held.
    if (key == Qt::Key_Escape)
        return PlayerAction::exit;
    if (key == Qt::Key_Q && modifiers.testFlag(Qt::ControlModifier))
        return PlayerAction::exit;

    // Chords belong to the system and other shortcuts. Shift and the keypad flag are
    // left out on purpose: they never turn a plain key into something else.
    constexpr Qt::KeyboardModifiers chordModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (modifiers & chordModifiers)
        return std::nullopt;

    switch (key) {
    case Qt::Key_Space:
        return PlayerAction::togglePause;
    case Qt::Key_Left:
        return PlayerAction::previous;
    case Qt::Key_Right:
        return PlayerAction::next;
    case Qt::Key_1:
        return PlayerAction::stylePhotoWall;
    case Qt::Key_2:
        return PlayerAction::styleMemoryTable;
    case Qt::Key_3:
        return PlayerAction::styleClassic;
    default:
        return std::nullopt;
    }
}

bool PlayerKeyRouter::handleKey(int qtKey, Qt::KeyboardModifiers modifiers) const
{
    const std::optional<PlayerAction> action = actionFor(qtKey, modifiers);
    if (!action)
        return false;
    perform(*action);
    return true;
}

} // namespace sorvane
