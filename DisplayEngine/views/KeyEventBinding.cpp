#include "views/KeyEventBinding.h"

#include <QKeyEvent>

namespace sorvane {

namespace {

std::optional<QString> namedKey(int qtKey)
{
    switch (qtKey) {
    case Qt::Key_Escape:
        return QStringLiteral("escape");
    case Qt::Key_Right:
        return QString(QChar(0x2192));
    case Qt::Key_Left:
        return QString(QChar(0x2190));
    case Qt::Key_Up:
        return QString(QChar(0x2191));
    case Qt::Key_Down:
        return QString(QChar(0x2193));
    // The key that deletes backwards is "delete" where bindings come from; both keys count.
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return QString(QChar(0x7F));
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return QStringLiteral("\r");
    case Qt::Key_Tab:
        return QStringLiteral("\t");
    default:
        return std::nullopt;
    }
}

} // namespace

quint64 KeyEventBinding::modifierWord(Qt::KeyboardModifiers modifiers)
{
    quint64 word = 0;
    if (modifiers.testFlag(Qt::ControlModifier))
        word |= KeyBinding::command;
    if (modifiers.testFlag(Qt::AltModifier))
        word |= KeyBinding::option;
    if (modifiers.testFlag(Qt::MetaModifier))
        word |= KeyBinding::control;
    if (modifiers.testFlag(Qt::ShiftModifier))
        word |= KeyBinding::shift;
    return word;
}

std::optional<KeyBinding> KeyEventBinding::fromKey(int qtKey, Qt::KeyboardModifiers modifiers)
{
    if (const std::optional<QString> name = namedKey(qtKey))
        return KeyBinding {*name, modifierWord(modifiers)};
    // Qt names a key that types a character by that character's code (upper case for
    // letters); everything from Qt::Key_Escape on is a function or modifier key.
    const char32_t code = char32_t(qtKey);
    if (qtKey < Qt::Key_Space || qtKey >= Qt::Key_Escape || code > 0x10FFFF || QChar::isSurrogate(code)
        || QChar::isNonCharacter(code))
        return std::nullopt;
    return KeyBinding {QString::fromUcs4(&code, 1).toLower(), modifierWord(modifiers)};
}

std::optional<KeyBinding> KeyEventBinding::fromKeyEvent(const QKeyEvent &event)
{
    return fromKey(event.key(), event.modifiers());
}

} // namespace sorvane
