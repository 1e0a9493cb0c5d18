// Key presses as stored bindings, and the application filter that routes them to actions.
#include "views/KeyActionRouter.h"

#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QWindow>

namespace sorvane {
namespace {

constexpr quint64 command = KeyBinding::command;
constexpr quint64 option = KeyBinding::option;
constexpr quint64 control = KeyBinding::control;
constexpr quint64 shift = KeyBinding::shift;

TEST(KeyEventBinding, KeyPressesReadAsTheStoredKeyTextAndModifierWord)
{
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        std::optional<KeyBinding> expected;
    } rows[] = {
        {Qt::Key_F, Qt::ControlModifier, KeyBinding {"f", command}},
        {Qt::Key_F, Qt::AltModifier | Qt::MetaModifier, KeyBinding {"f", option | control}},
        {Qt::Key_BracketRight, Qt::ControlModifier | Qt::KeypadModifier, KeyBinding {"]", command}},
        {Qt::Key_Space, Qt::NoModifier, KeyBinding {" ", 0}},
        {Qt::Key_Right, Qt::NoModifier, KeyBinding {QString(QChar(0x2192)), 0}},
        {Qt::Key_Left, Qt::ShiftModifier, KeyBinding {QString(QChar(0x2190)), shift}},
        {Qt::Key_Escape, Qt::AltModifier, KeyBinding {"escape", option}},
        {Qt::Key_Backspace, Qt::NoModifier, KeyBinding {QString(QChar(0x7F)), 0}},
        {0x0416, Qt::NoModifier, KeyBinding {QString(QChar(0x0436)), 0}}, // Cyrillic Zhe, lower case
        {Qt::Key_Shift, Qt::ShiftModifier, std::nullopt},
        {Qt::Key_F5, Qt::NoModifier, std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(KeyEventBinding::fromKey(row.key, row.modifiers), row.expected) << std::hex << row.key;
}

enum class Act { quit, next };

// Filters run newest first: installed before the router, this one sees what the router lets through.
class KeysPassedOn : public QObject {
public:
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::KeyPress;
        return false;
    }
};

TEST(KeyActionRouter, KnownKeysAtAWindowAreSwallowedAndHandledOnce)
{
    const KeyRouteTable<Act> table({{KeyBinding {"escape", 0}, Act::quit, KeyBinding::matchedFlags},
        {KeyBinding {QString(QChar(0x2192)), 0}, Act::next, shift}});
    std::vector<Act> handled;
    KeysPassedOn passedOn;
    qApp->installEventFilter(&passedOn);
    KeyActionRouter<Act> router(table, [&](Act action) { handled.push_back(action); });
    router.start();
    QWindow window;
    QObject item; // an item inside the window sees the same press
    const struct {
        QObject *receiver;
        int key;
        Qt::KeyboardModifiers modifiers;
        std::optional<Act> expected;
    } rows[] = {
        {&window, Qt::Key_Escape, Qt::ControlModifier | Qt::AltModifier, Act::quit},
        {&window, Qt::Key_Right, Qt::ShiftModifier, Act::next},
        {&window, Qt::Key_Right, Qt::ControlModifier, std::nullopt},
        {&window, Qt::Key_Q, Qt::NoModifier, std::nullopt},
        {&item, Qt::Key_Escape, Qt::NoModifier, std::nullopt},
    };
    for (const auto &row : rows) {
        handled.clear();
        passedOn.count = 0;
        QKeyEvent press(QEvent::KeyPress, row.key, row.modifiers);
        QCoreApplication::sendEvent(row.receiver, &press);
        EXPECT_EQ(passedOn.count, row.expected ? 0 : 1) << std::hex << row.key;
        EXPECT_EQ(handled, row.expected ? std::vector<Act> {*row.expected} : std::vector<Act> {}) << row.key;
    }
    qApp->removeEventFilter(&passedOn);
}

} // namespace
} // namespace sorvane
