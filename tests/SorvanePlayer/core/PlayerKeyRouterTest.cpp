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
};

const std::vector<KeyCase> &keyTable()
{
    static const std::vector<KeyCase> table {
        {"Escape", Qt::Key_Escape, none, Action::exit},
        {"Command-Escape", Qt::Key_Escape, command, Action::exit},
        {"every modifier Escape", Qt::Key_Escape, command | option | macControl | shift, Action::exit},
        {"Command-Q", Qt::Key_Q, command, Action::exit},
        {"Command-Shift-Q", Qt::Key_Q, command | shift, Action::exit},
        {"Q", Qt::Key_Q, none, std::nullopt},
        {"Shift-Q", Qt::Key_Q, shift, std::nullopt},
        {"Control-Q", Qt::Key_Q, macControl, std::nullopt},
        {"Space", Qt::Key_Space, none, Action::togglePause},
        {"Shift-Space", Qt::Key_Space, shift, Action::togglePause},
        {"Command-Space", Qt::Key_Space, command, std::nullopt},
        {"Left", Qt::Key_Left, none, Action::previous},
        {"Shift-Left", Qt::Key_Left, shift, Action::previous},
        {"Option-Left", Qt::Key_Left, option, std::nullopt},
        {"Right", Qt::Key_Right, none, Action::next},
        {"keypad Right", Qt::Key_Right, keypad, Action::next},
        {"Command-Right", Qt::Key_Right, command, std::nullopt},
        {"1", Qt::Key_1, none, Action::stylePhotoWall},
        {"keypad 1", Qt::Key_1, keypad, Action::stylePhotoWall},
        {"2", Qt::Key_2, none, Action::styleMemoryTable},
        {"Command-2", Qt::Key_2, command, std::nullopt},
        {"3", Qt::Key_3, none, Action::styleClassic},
        {"keypad 3", Qt::Key_3, keypad, Action::styleClassic},
        {"Command-keypad 3", Qt::Key_3, command | keypad, std::nullopt},
        {"0", Qt::Key_0, none, std::nullopt},
        {"4", Qt::Key_4, none, std::nullopt},
        {"Up", Qt::Key_Up, none, std::nullopt},
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

TEST(PlayerKeyRouter, HandledKeysCallTheirHandlerExactlyOnce)
{
    for (const KeyCase &row : keyTable()) {
        PlayerKeyRouter router;
        Recorder recorder;
        recorder.install(router);

        EXPECT_EQ(router.handleKey(row.key, row.modifiers), row.expected.has_value()) << row.name;
        if (row.expected)
            EXPECT_EQ(recorder.calls, std::vector<std::string> {expectedCall(*row.expected)}) << row.name;
        else
            EXPECT_TRUE(recorder.calls.empty()) << row.name;
    }
}

} // namespace
} // namespace sorvane
