#pragma once

#include "slideshow/SlideshowAction.h"

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

namespace sorvane {

// One keyboard shortcut: the character a key produces (or a key name such as "escape";
// the arrows are "→" and "←", the delete key U+007F) and the modifier flags held with it.
// The flags are stored as the same word on every platform; Command is Ctrl on Linux and
// Windows, and conversion to toolkit modifiers happens at the view's edge.
struct KeyBinding {
    enum ModifierFlag : quint64 {
        shift = quint64(1) << 17,
        control = quint64(1) << 18,
        option = quint64(1) << 19,
        command = quint64(1) << 20,
    };
    // Flags that take part in matching; any others in a stored word are kept but ignored.
    static constexpr quint64 matchedFlags = shift | control | option | command;

    QString key;
    quint64 modifiers = 0;

    bool matches(const QString &pressedKey, quint64 pressedModifiers) const;
    // As the overlay and a binding editor show it: "Ctrl+F", "Space", "→".
    QString displayText() const;

    QJsonObject toJson() const;
    // Nothing when a member is missing or of the wrong type.
    static std::optional<KeyBinding> fromJson(const QJsonValue &value);

    bool operator==(const KeyBinding &) const = default;
};

// Bindings by action label, as the settings store them.
using KeyBindings = QMap<QString, KeyBinding>;

// The fifteen bindings a fresh settings record has.
KeyBindings defaultKeyBindings();
// The first action, in action order, bound to this key and these modifiers.
std::optional<SlideshowAction> actionForKey(const KeyBindings &bindings, const QString &key, quint64 modifiers);

} // namespace sorvane
