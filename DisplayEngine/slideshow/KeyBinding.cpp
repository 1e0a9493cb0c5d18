#include "slideshow/KeyBinding.h"

#include <QJsonValue>

#include <cmath>

namespace sorvane {

bool KeyBinding::matches(const QString &pressedKey, quint64 pressedModifiers) const
{
    return key == pressedKey && (modifiers & matchedFlags) == (pressedModifiers & matchedFlags);
}

QString KeyBinding::displayText() const
{
    QString text;
    // Command first, as the Ctrl it becomes here.
    const std::pair<ModifierFlag, const char *> names[]
        = {{command, "Ctrl+"}, {option, "Alt+"}, {shift, "Shift+"}, {control, "Meta+"}};
    for (const auto &[flag, name] : names) {
        if (modifiers & flag)
            text += QLatin1StringView(name);
    }
    if (key == QLatin1StringView(" "))
        return text + QStringLiteral("Space");
    if (key == QLatin1StringView("escape"))
        return text + QStringLiteral("Esc");
    if (key == QString(QChar(0x7F)))
        return text + QStringLiteral("Delete");
    return text + (key.size() == 1 ? key.toUpper() : key);
}

QJsonObject KeyBinding::toJson() const
{
    return {{QStringLiteral("key"), key}, {QStringLiteral("modifiers"), double(modifiers)}};
}

std::optional<KeyBinding> KeyBinding::fromJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const QJsonValue key = object.value(QLatin1StringView("key"));
    const QJsonValue modifiers = object.value(QLatin1StringView("modifiers"));
    if (!value.isObject() || !key.isString() || !modifiers.isDouble())
        return std::nullopt;
    const double word = modifiers.toDouble();
    // A flags word is a whole number that fits 64 bits.
    if (word < 0 || word >= 18446744073709551616.0 || std::floor(word) != word)
        return std::nullopt;
    return KeyBinding {key.toString(), quint64(word)};
}

KeyBindings defaultKeyBindings()
{
    using A = SlideshowAction;
    const auto command = KeyBinding::command;
    const std::pair<A, KeyBinding> defaults[] = {
        {A::toggleFullScreen, {QStringLiteral("f"), command}},
        {A::startStop, {QStringLiteral(" "), 0}},
        {A::nextImage, {QString(QChar(0x2192)), 0}},
        {A::previousImage, {QString(QChar(0x2190)), 0}},
        {A::increaseInterval, {QStringLiteral("]"), command}},
        {A::decreaseInterval, {QStringLiteral("["), command}},
        {A::toggleSortMode, {QStringLiteral("r"), 0}},
        {A::toggleCrossFade, {QStringLiteral("t"), 0}},
        {A::zoomIn, {QStringLiteral("="), command}},
        {A::zoomOut, {QStringLiteral("-"), command}},
        {A::resetZoom, {QStringLiteral("0"), command}},
        {A::showHelp, {QStringLiteral("/"), 0}},
        {A::exit, {QStringLiteral("escape"), 0}},
        {A::moveToTrash, {QString(QChar(0x7F)), 0}},
        {A::cycleImageFilter, {QStringLiteral("f"), 0}},
    };
    KeyBindings bindings;
    for (const auto &[action, binding] : defaults)
        bindings.insert(toRaw(action), binding);
    return bindings;
}

std::optional<SlideshowAction> actionForKey(const KeyBindings &bindings, const QString &key, quint64 modifiers)
{
    for (const SlideshowAction action : allSlideshowActions) {
        const auto found = bindings.constFind(toRaw(action));
        if (found != bindings.constEnd() && found->matches(key, modifiers))
            return action;
    }
    return std::nullopt;
}

} // namespace sorvane
