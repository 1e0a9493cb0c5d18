#include "slideshow/KeyRouteTable.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(KeyRouteTable, StoredBindingsRouteAsTheSettingsMatchThem)
{
    KeyBindings bindings = defaultKeyBindings();
    // Bound twice: the earlier action in action order (not label order) wins, as in the settings.
    bindings.insert(toRaw(SlideshowAction::nextImage), {QStringLiteral(" "), 0});
    const auto table = KeyRouteTable<SlideshowAction>::fromBindings(
        bindings, allSlideshowActions, [](SlideshowAction action) { return toRaw(action); });
    EXPECT_EQ(table.routes().size(), bindings.size());
    for (const KeyBinding &binding : bindings) {
        for (const quint64 extra : {quint64(0), quint64(KeyBinding::shift)}) {
            const KeyBinding pressed {binding.key, binding.modifiers ^ extra};
            EXPECT_EQ(table.actionFor(pressed), actionForKey(bindings, pressed.key, pressed.modifiers))
                << pressed.key.toStdString() << " " << pressed.modifiers;
        }
    }
}

} // namespace
} // namespace sorvane
