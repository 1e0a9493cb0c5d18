#include "core/PlayerKeyRouter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sorvane {
namespace {

constexpr Qt::KeyboardModifiers none = Qt::NoModifier;
constexpr Qt::KeyboardModifiers command = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers option = Qt::AltModifier;
constexpr Qt::KeyboardModifiers macControl = Qt::MetaModifier;
constexpr Qt::KeyboardModifiers shift = Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers keypad = Qt::KeypadModifier;

// Every key either calls exactly one handler and is swallowed, or calls none and is passed on.
TEST(PlayerKeyRouter, HandledKeysCallTheirHandlerExactlyOnce)
{
    struct KeyCase {
        const char *name;
        int key;
        Qt::KeyboardModifiers modifiers;
        std::string call; // empty: not the player's key
    };
    const KeyCase table[] = {
        {"Escape", Qt::Key_Escape, none, "exit"},
        {"Command-Escape", Qt::Key_Escape, command, "exit"},
        {"every modifier Escape", Qt::Key_Escape, command | option | macControl | shift, "exit"},
        {"Command-Q", Qt::Key_Q, command, "exit"},
        {"Command-Shift-Q", Qt::Key_Q, command | shift, "exit"},
        {"Q", Qt::Key_Q, none, ""},
        {"Shift-Q", Qt::Key_Q, shift, ""},
        {"Control-Q", Qt::Key_Q, macControl, ""},
        {"Space", Qt::Key_Space, none, "togglePause"},
        {"Shift-Space", Qt::Key_Space, shift, "togglePause"},
        {"Command-Space", Qt::Key_Space, command, ""},
        {"Left", Qt::Key_Left, none, "previous"},
        {"Shift-Left", Qt::Key_Left, shift, "previous"},
        {"Option-Left", Qt::Key_Left, option, ""},
        {"Right", Qt::Key_Right, none, "next"},
        {"keypad Right", Qt::Key_Right, keypad, "next"},
        {"Command-Right", Qt::Key_Right, command, ""},
        {"1", Qt::Key_1, none, "style photo-wall"},
        {"keypad 1", Qt::Key_1, keypad, "style photo-wall"},
        {"2", Qt::Key_2, none, "style memory-table"},
        {"Command-2", Qt::Key_2, command, ""},
        {"3", Qt::Key_3, none, "style classic"},
        {"keypad 3", Qt::Key_3, keypad, "style classic"},
        {"Command-keypad 3", Qt::Key_3, command | keypad, ""},
        {"0", Qt::Key_0, none, ""},
        {"4", Qt::Key_4, none, ""},
        {"Up", Qt::Key_Up, none, ""},
        {"W", Qt::Key_W, command, ""},
    };
    for (const KeyCase &row : table) {
        // A player key is swallowed even before any handler is set, and calls nothing.
        EXPECT_EQ(PlayerKeyRouter().handleKey(row.key, row.modifiers), !row.call.empty()) << row.name;
        PlayerKeyRouter router;
        std::vector<std::string> calls;
        router.onExit = [&] { calls.push_back("exit"); };
        router.onTogglePause = [&] { calls.push_back("togglePause"); };
        router.onNext = [&] { calls.push_back("next"); };
        router.onPrevious = [&] { calls.push_back("previous"); };
        router.onStyle = [&](PlayerStyle style) { calls.push_back("style " + toRaw(style).toStdString()); };
        EXPECT_EQ(router.handleKey(row.key, row.modifiers), !row.call.empty()) << row.name;
        EXPECT_EQ(calls, row.call.empty() ? std::vector<std::string> {} : std::vector<std::string> {row.call})
            << row.name;
    }
}

} // namespace
} // namespace sorvane
