// Key presses in the stored form of a binding.
#include "views/KeyEventBinding.h"

#include <gtest/gtest.h>

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
    };
    for (const auto &row : rows)
        EXPECT_EQ(KeyEventBinding::fromKey(row.key, row.modifiers), row.expected) << std::hex << row.key;
}

} // namespace
} // namespace sorvane
