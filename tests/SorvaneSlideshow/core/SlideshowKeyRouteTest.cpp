#include "core/SlideshowKeyRoute.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(SlideshowKeyRoute, readsTheWindowsBindingsAndKeepsEscapeAsAWayOut)
{
    using A = SlideshowAction;
    const KeyBindings defaults = defaultKeyBindings();
    KeyBindings exitMoved = defaults;
    exitMoved[toRaw(A::exit)] = KeyBinding {QStringLiteral("q"), 0};
    KeyBindings escapeTaken = exitMoved;
    escapeTaken[toRaw(A::startStop)] = KeyBinding {QStringLiteral("escape"), 0};

    struct Case {
        const char *name;
        const KeyBindings &bindings;
        KeyBinding pressed;
        std::optional<A> expected;
    };
    const quint64 command = KeyBinding::command;
    const QList<Case> cases {
        {"arrow steps", defaults, {QString(QChar(0x2192)), 0}, A::nextImage},
        {"slash asks for the shortcut card", defaults, {QStringLiteral("/"), 0}, A::showHelp},
        {"so does the question mark, typed with shift", defaults, {QStringLiteral("?"), KeyBinding::shift},
            A::showHelp},
        {"the modifier tells f from Ctrl+F", defaults, {QStringLiteral("f"), 0}, A::cycleImageFilter},
        {"Ctrl+F is full screen", defaults, {QStringLiteral("f"), command}, A::toggleFullScreen},
        {"escape is exit", defaults, {QStringLiteral("escape"), 0}, A::exit},
        {"an unbound key goes on", defaults, {QStringLiteral("x"), 0}, std::nullopt},
        {"a binding's key without its modifier goes on", defaults, {QStringLiteral("]"), 0}, std::nullopt},
        {"exit on its new key", exitMoved, {QStringLiteral("q"), 0}, A::exit},
        {"escape still exits after exit moved", exitMoved, {QStringLiteral("escape"), 0}, A::exit},
        {"escape bound to another action does that", escapeTaken, {QStringLiteral("escape"), 0}, A::startStop},
        {"space freed by that binding goes on", escapeTaken, {QStringLiteral(" "), 0}, std::nullopt},
    };
    for (const Case &c : cases)
        EXPECT_EQ(SlideshowKeyRoute::actionFor(c.bindings, c.pressed), c.expected) << c.name;
}

} // namespace
} // namespace sorvane
