#include "core/PlayerKeyRouter.h"

namespace sorvane {

namespace {

constexpr quint64 anyModifier = KeyBinding::matchedFlags;
constexpr quint64 shiftOnly = KeyBinding::shift;
// Ctrl+Q leaves whatever else is held with it.
constexpr quint64 besidesCommand = KeyBinding::matchedFlags & ~quint64(KeyBinding::command);

KeyRouteTable<PlayerAction>::Route route(QString key, quint64 modifiers, PlayerAction action, quint64 ignored)
{
    return {KeyBinding {std::move(key), modifiers}, action, ignored};
}

} // namespace

const KeyRouteTable<PlayerAction> &PlayerKeyRouter::table()
{
    static const KeyRouteTable<PlayerAction> keys({
        route(QStringLiteral("escape"), 0, PlayerAction::exit, anyModifier),
        route(QStringLiteral("q"), KeyBinding::command, PlayerAction::exit, besidesCommand),
        route(QStringLiteral(" "), 0, PlayerAction::togglePause, shiftOnly),
        route(QString(QChar(0x2190)), 0, PlayerAction::previous, shiftOnly),
        route(QString(QChar(0x2192)), 0, PlayerAction::next, shiftOnly),
        route(QStringLiteral("1"), 0, PlayerAction::stylePhotoWall, shiftOnly),
        route(QStringLiteral("2"), 0, PlayerAction::styleMemoryTable, shiftOnly),
        route(QStringLiteral("3"), 0, PlayerAction::styleClassic, shiftOnly),
    });
    return keys;
}

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

KeyBinding PlayerKeyRouter::placed(KeyBinding pressed, quint32 nativeScanCode)
{
    if (const int digit = digitRowKey(nativeScanCode))
        pressed.key = QString::number(digit);
    return pressed;
}

std::optional<PlayerAction> PlayerKeyRouter::actionFor(const KeyBinding &pressed, quint32 nativeScanCode)
{
    return table().actionFor(placed(pressed, nativeScanCode));
}

} // namespace sorvane
