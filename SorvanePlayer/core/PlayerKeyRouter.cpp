#include "core/PlayerKeyRouter.h"

namespace sorvane {

int PlayerKeyRouter::digitRowKey(quint32 nativeScanCode)
{
#if defined(Q_OS_WIN)
    // Set 1 scan codes of the main row.
    constexpr quint32 firstDigit = 0x02;
#else
    // X11 and Wayland keycodes: the evdev code plus 8.
    constexpr quint32 firstDigit = 10;
#endif
    if (nativeScanCode >= firstDigit && nativeScanCode < firstDigit + 3)
        return int(nativeScanCode - firstDigit) + 1;
    return 0;
}

std::optional<PlayerAction> PlayerKeyRouter::actionFor(int key, Qt::KeyboardModifiers modifiers, quint32 nativeScanCode)
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

    // A style key typed as another character (Shift held, or a layout whose digits are
    // shifted) still counts by its place on the keyboard.
    if (const int digit = digitRowKey(nativeScanCode))
        key = Qt::Key_0 + digit;

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

bool PlayerKeyRouter::handleKey(int qtKey, Qt::KeyboardModifiers modifiers, quint32 nativeScanCode) const
{
    const std::optional<PlayerAction> action = actionFor(qtKey, modifiers, nativeScanCode);
    if (!action)
        return false;
    perform(*action);
    return true;
}

} // namespace sorvane
