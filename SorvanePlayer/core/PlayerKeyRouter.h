#pragma once

#include "core/PlayerActionHandlers.h"
#include "slideshow/KeyRouteTable.h"

#include <optional>

namespace sorvane {

// The player's keys and what they do. The host routes every key press of the application
// through this table and swallows the keys it knows; the actions go to these handlers.
class PlayerKeyRouter : public PlayerActionHandlers {
public:
    using Action = PlayerAction;

    // Escape, and Ctrl+Q, leave whatever else is held; Space, the arrows and 1, 2, 3 act
    // only without Ctrl, Alt or Meta (those chords belong to the system and other
    // shortcuts), and Shift never stops them.
    static const KeyRouteTable<PlayerAction> &table();

    // The key as the table reads it. `nativeScanCode` (QKeyEvent::nativeScanCode(), 0 when
    // unknown) names the physical key: Shift turns the 1 key into '!' on one layout and '&'
    // into 1 on another, and the style keys are meant by where they sit, not by the
    // character they type.
    static KeyBinding placed(KeyBinding pressed, quint32 nativeScanCode);
    static std::optional<Action> actionFor(const KeyBinding &pressed, quint32 nativeScanCode = 0);

    // The digit 1, 2 or 3 of the main row that this platform scan code stands for, else 0.
    static int digitRowKey(quint32 nativeScanCode);
};

} // namespace sorvane
