#include "slideshow/SlideshowHotkeyOverlay.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>

using namespace sorvane;

namespace {

constexpr quint64 command = KeyBinding::command;

TEST(KeyBinding, KeysFindTheirActionByKeyAndModifiers)
{
    const KeyBindings defaults = defaultKeyBindings();
    EXPECT_EQ(defaults.size(), 15);
    const struct {
        const char16_t *key;
        quint64 modifiers;
        std::optional<SlideshowAction> action;
    } rows[] = {
        {u"f", command, SlideshowAction::toggleFullScreen},
        {u"f", 0, SlideshowAction::cycleImageFilter},
        {u"f", KeyBinding::shift, std::nullopt},
        {u"f", command | (quint64(1) << 8), SlideshowAction::toggleFullScreen}, // a flag no binding names
        {u"F", 0, std::nullopt},
        {u" ", 0, SlideshowAction::startStop},
        {u"\u2192", 0, SlideshowAction::nextImage},
        {u"escape", 0, SlideshowAction::exit},
        {u"\u007f", 0, SlideshowAction::moveToTrash},
        {u"0", command, SlideshowAction::resetZoom},
        {u"0", 0, std::nullopt},
    };
    for (const auto &row : rows) {
        const QString key = QString::fromUtf16(row.key);
        EXPECT_EQ(actionForKey(defaults, key, row.modifiers), row.action) << key.toStdString() << " " << row.modifiers;
    }
}

TEST(KeyBinding, StoredBindingsReadBackAndMalformedOnesDoNot)
{
    for (const KeyBinding &binding : defaultKeyBindings())
        EXPECT_EQ(KeyBinding::fromJson(binding.toJson()), binding);
    for (const char *text : {R"({"key":"f"})", R"({"key":1,"modifiers":0})", R"({"key":"f","modifiers":"0"})",
             R"({"key":"f","modifiers":-1})", R"({"key":"f","modifiers":1.5})", R"(["f",0])"}) {
        const QJsonValue value = QJsonDocument::fromJson(QByteArray("[") + text + "]").array().at(0);
        EXPECT_EQ(KeyBinding::fromJson(value), std::nullopt) << text;
    }
}

} // namespace
