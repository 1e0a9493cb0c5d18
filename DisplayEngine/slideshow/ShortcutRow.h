#pragma once

#include <QString>

namespace sorvane {

// One line of the keyboard-shortcut overlay: the key(s) and what they do.
struct ShortcutRow {
    QString key;
    QString description;

    bool operator==(const ShortcutRow &) const = default;
};

} // namespace sorvane
