#include "core/PlayerKeyRouter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sorvane {
namespace {

using Action = PlayerKeyRouter::Action;

constexpr Qt::KeyboardModifiers none = Qt::NoModifier;
constexpr Qt::KeyboardModifiers command = Qt::ControlModifier;
constexpr Qt::KeyboardModifiers option = Qt::AltModifier;
constexpr Qt::KeyboardModifiers macControl = Qt::MetaModifier;
constexpr Qt::KeyboardModifiers shift = Qt::ShiftModifier;
constexpr Qt::KeyboardModifiers keypad = Qt::KeypadModifier;

struct KeyCase {
    const char *name;
    int key;
    Qt::KeyboardModifiers modifiers;
    std::optional<Action> expected;
    // The physical key, as the platform numbers it; 0 when the event carries none.
    quint32 scanCode = 0;
};

// The main row's 1, 2 and 3 keys as X11/Wayland number them.
constexpr quint32 row1 = 10, row2 = 11, row3 = 12, keypad1 = 87;

const std::vector<KeyCase> &keyTable()
{
    static const std::vector<KeyCase> table {
        {"Escape", Qt::Key_Escape, none, Action::exit},
        {"Option-Escape", Qt::Key_Escape, option, Action::exit},
        {"Command-Escape", Qt::Key_Escape, command, Action::exit},
        {"Control-Escape", Qt::Key_Escape, macControl, Action::exit},
        {"every modifier Escape", Qt::Key_Escape, command | option | macControl | shift, Action::exit},
        {"Command-Q", Qt::Key_Q, command, Action::exit},
        {"Command-Shift-Q", Qt::Key_Q, command | shift, Action::exit},
        {"Command-Option-Q", Qt::Key_Q, command | option, Action::exit},
        {"Q", Qt::Key_Q, none, std::nullopt},
        {"Shift-Q", Qt::Key_Q, shift, std::nullopt},
        {"Option-Q", Qt::Key_Q, option, std::nullopt},
        {"Control-Q", Qt::Key_Q, macControl, std::nullopt},
        {"Space", Qt::Key_Space, none, Action::togglePause},
        {"Shift-Space", Qt::Key_Space, shift, Action::togglePause},
        {"Command-Space", Qt::Key_Space, command, std::nullopt},
        {"Option-Space", Qt::Key_Space, option, std::nullopt},
        {"Control-Space", Qt::Key_Space, macControl, std::nullopt},
        {"Left", Qt::Key_Left, none, Action::previous},
        {"keypad Left", Qt::Key_Left, keypad, Action::previous},
        {"Shift-Left", Qt::Key_Left, shift, Action::previous},
        {"Option-Left", Qt::Key_Left, option, std::nullopt},
        {"Right", Qt::Key_Right, none, Action::next},
        {"Shift-Right", Qt::Key_Right, shift, Action::next},
        {"keypad Right", Qt::Key_Right, keypad, Action::next},
        {"Command-Right", Qt::Key_Right, command, std::nullopt},
        {"Control-Right", Qt::Key_Right, macControl, std::nullopt},
        {"1", Qt::Key_1, none, Action::stylePhotoWall},
        {"keypad 1", Qt::Key_1, keypad, Action::stylePhotoWall},
        {"Shift-keypad 1", Qt::Key_1, keypad | shift, Action::stylePhotoWall},
        {"Control-1", Qt::Key_1, macControl, std::nullopt},
        {"2", Qt::Key_2, none, Action::styleMemoryTable},
        {"keypad 2", Qt::Key_2, keypad, Action::styleMemoryTable},
        {"Command-2", Qt::Key_2, command, std::nullopt},
        {"3", Qt::Key_3, none, Action::styleClassic},
        {"keypad 3", Qt::Key_3, keypad, Action::styleClassic},
        {"Option-3", Qt::Key_3, option, std::nullopt},
        {"Command-keypad 3", Qt::Key_3, command | keypad, std::nullopt},
        {"0", Qt::Key_0, none, std::nullopt},
        {"4", Qt::Key_4, none, std::nullopt},
        {"Up", Qt::Key_Up, none, std::nullopt},
        {"Down", Qt::Key_Down, none, std::nullopt},
        {"Return", Qt::Key_Return, none, std::nullopt},
        {"Tab", Qt::Key_Tab, none, std::nullopt},
        {"Exclam without a scan code", Qt::Key_Exclam, shift, std::nullopt},
        {"Shift-1 on US", Qt::Key_Exclam, shift, Action::stylePhotoWall, row1},
        {"Shift-2 on US", Qt::Key_At, shift, Action::styleMemoryTable, row2},
        {"Shift-3 on UK", Qt::Key_sterling, shift, Action::styleClassic, row3},
        {"1 on AZERTY", Qt::Key_Ampersand, none, Action::stylePhotoWall, row1},
        {"Shift-1 on AZERTY", Qt::Key_1, shift, Action::stylePhotoWall, row1},
        {"Control-Shift-1", Qt::Key_Exclam, macControl | shift, std::nullopt, row1},
        {"Option-1", Qt::Key_1, option, std::nullopt, row1},
        {"keypad 1 with its code", Qt::Key_1, keypad, Action::stylePhotoWall, keypad1},
        {"keypad End", Qt::Key_End, keypad, std::nullopt, keypad1},
        {"Escape with a digit's code", Qt::Key_Escape, shift, Action::exit, row2},
        {"W", Qt::Key_W, command, std::nullopt},
    };
    return table;
}

// Records every handler call, in order, as text.
struct Recorder {
    std::vector<std::string> calls;

    void install(PlayerKeyRouter &router)
    {
        router.onExit = [this] { calls.push_back("exit"); };
        router.onTogglePause = [this] { calls.push_back("togglePause"); };
        router.onNext = [this] { calls.push_back("next"); };
        router.onPrevious = [this] { calls.push_back("previous"); };
        router.onStyle = [this](PlayerStyle style) { calls.push_back("style " + toRaw(style).toStdString()); };
    }
};

std::string expectedCall(Action action)
{
    switch (action) {
    case Action::exit:
        return "exit";
    case Action::togglePause:
        return "togglePause";
    case Action::next:
        return "next";
    case Action::previous:
        return "previous";
    case Action::stylePhotoWall:
        return "style photo-wall";
    case Action::styleMemoryTable:
        return "style memory-table";
    case Action::styleClassic:
        return "style classic";
    }
    return {};
}

TEST(PlayerKeyRouter, ActionForFollowsTheKeyTable)
{
    for (const KeyCase &row : keyTable())
        EXPECT_EQ(PlayerKeyRouter::actionFor(row.key, row.modifiers, row.scanCode), row.expected) << row.name;
}

TEST(PlayerKeyRouter, HandledKeysCallTheirHandlerExactlyOnce)
{
    for (const KeyCase &row : keyTable()) {
        PlayerKeyRouter router;
        Recorder recorder;
        recorder.install(router);

        EXPECT_EQ(router.handleKey(row.key, row.modifiers, row.scanCode), row.expected.has_value()) << row.name;
        if (row.expected)
            EXPECT_EQ(recorder.calls, std::vector<std::string> {expectedCall(*row.expected)}) << row.name;
        else
            EXPECT_TRUE(recorder.calls.empty()) << row.name;
    }
}

TEST(PlayerKeyRouter, RecognisedKeysAreSwallowedEvenWithoutHandlers)
{
    const PlayerKeyRouter router;
    for (const KeyCase &row : keyTable())
        EXPECT_EQ(router.handleKey(row.key, row.modifiers, row.scanCode), row.expected.has_value()) << row.name;
}

TEST(PlayerKeyRouter, AMissingHandlerDoesNotFallBackToAnother)
{
    PlayerKeyRouter router;
    Recorder recorder;
    recorder.install(router);
    router.onTogglePause = nullptr;
    router.onStyle = nullptr;

    EXPECT_TRUE(router.handleKey(Qt::Key_Space, none));
    EXPECT_TRUE(router.handleKey(Qt::Key_2, none));
    EXPECT_TRUE(recorder.calls.empty());

    EXPECT_TRUE(router.handleKey(Qt::Key_Right, none));
    EXPECT_EQ(recorder.calls, std::vector<std::string> {"next"});
}

} // namespace
} // namespace sorvane
