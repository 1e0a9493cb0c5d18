#include "slideshow/SlideshowSettings.h"

#include "EngineLog.h"
#include "slideshow/Preferences.h"

#include <QJsonDocument>

#include <type_traits>

namespace sorvane {

namespace {

const QString legacyCrossFadeKey = QStringLiteral("enableCrossFade");
// Where a stored record that this version cannot read is kept when a save replaces it.
const QString unreadableKey = SlideshowSettings::preferenceKey + QStringLiteral(".unreadable");

// Calls `visit(key, field)` for every field but `transitionStyle`, in declaration order.
// One list serves both directions, so a field cannot be written and not read.
template <typename Settings, typename Visit> void forEachField(Settings &s, Visit &&visit)
{
    visit(QStringLiteral("defaultDuration"), s.defaultDuration);
    visit(QStringLiteral("transitionDuration"), s.transitionDuration);
    visit(QStringLiteral("autoAdvance"), s.autoAdvance);
    visit(QStringLiteral("loopSlideshow"), s.loopSlideshow);
    visit(QStringLiteral("reshuffleOnLoop"), s.reshuffleOnLoop);
    visit(QStringLiteral("backgroundColor"), s.backgroundColor);
    visit(QStringLiteral("imageScaling"), s.imageScaling);
    visit(QStringLiteral("imageSource"), s.imageSource);
    visit(QStringLiteral("showImageInfo"), s.showImageInfo);
    visit(QStringLiteral("alwaysShowImageInfo"), s.alwaysShowImageInfo);
    visit(QStringLiteral("fileDisplayFormat"), s.fileDisplayFormat);
    visit(QStringLiteral("showProgress"), s.showProgress);
    visit(QStringLiteral("controlHideDelay"), s.controlHideDelay);
    visit(QStringLiteral("keyBindings"), s.keyBindings);
    visit(QStringLiteral("alwaysStartFullScreen"), s.alwaysStartFullScreen);
    visit(QStringLiteral("controlSize"), s.controlSize);
    visit(QStringLiteral("controlOpacity"), s.controlOpacity);
    visit(QStringLiteral("enablePinchZoom"), s.enablePinchZoom);
    visit(QStringLiteral("preventZoomOutPast1x"), s.preventZoomOutPast1x);
    visit(QStringLiteral("naturalScrollingForPan"), s.naturalScrollingForPan);
    visit(QStringLiteral("enableScrollToZoom"), s.enableScrollToZoom);
    visit(QStringLiteral("scrollZoomSensitivity"), s.scrollZoomSensitivity);
    visit(QStringLiteral("enableSmartZoom"), s.enableSmartZoom);
    visit(QStringLiteral("smartZoomLevel"), s.smartZoomLevel);
    visit(QStringLiteral("secondarySlideshowSortMode"), s.secondarySlideshowSortMode);
    visit(QStringLiteral("secondarySlideshowStartsPaused"), s.secondarySlideshowStartsPaused);
    visit(QStringLiteral("limitSlideshowsToMonitorCount"), s.limitSlideshowsToMonitorCount);
}

QJsonValue encode(double v)
{
    return v;
}
QJsonValue encode(bool v)
{
    return v;
}
QJsonValue encode(const QString &v)
{
    return v;
}
QJsonValue encode(const KeyBindings &bindings)
{
    QJsonObject object;
    for (auto it = bindings.cbegin(); it != bindings.cend(); ++it)
        object.insert(it.key(), it.value().toJson());
    return object;
}
template <typename Enum>
requires std::is_enum_v<Enum> QJsonValue encode(Enum v)
{
    return toRaw(v);
}

// Each gives false for a value of the wrong type.
bool decode(const QJsonValue &v, double &out)
{
    out = v.toDouble();
    return v.isDouble();
}
bool decode(const QJsonValue &v, bool &out)
{
    out = v.toBool();
    return v.isBool();
}
bool decode(const QJsonValue &v, QString &out)
{
    out = v.toString();
    return v.isString();
}
bool decode(const QJsonValue &v, KeyBindings &out)
{
    if (!v.isObject())
        return false;
    const QJsonObject object = v.toObject();
    KeyBindings bindings;
    for (auto it = object.begin(); it != object.end(); ++it) {
        const std::optional<KeyBinding> binding = KeyBinding::fromJson(it.value());
        if (!binding)
            return false;
        bindings.insert(it.key(), *binding);
    }
    out = bindings;
    return true;
}
template <typename Enum>
requires std::is_enum_v<Enum>
bool decode(const QJsonValue &v, Enum &out)
{
    const std::optional<Enum> value = fromRaw<Enum>(v.toString());
    if (!v.isString() || !value)
        return false;
    out = *value;
    return true;
}

// The record held under the key as an object: stored as one, or as JSON text.
std::optional<QJsonObject> storedObject(const Preferences &preferences)
{
    if (const std::optional<QJsonObject> object = preferences.objectValue(SlideshowSettings::preferenceKey))
        return object;
    if (const std::optional<QString> text = preferences.stringValue(SlideshowSettings::preferenceKey)) {
        const QJsonDocument document = QJsonDocument::fromJson(text->toUtf8());
        if (document.isObject())
            return document.object();
    }
    return std::nullopt;
}

} // namespace

QJsonObject SlideshowSettings::toJson() const
{
    QJsonObject object;
    forEachField(*this, [&](const QString &key, const auto &field) { object.insert(key, encode(field)); });
    object.insert(QStringLiteral("transitionStyle"), toRaw(transitionStyle));
    return object;
}

std::optional<SlideshowSettings> SlideshowSettings::fromJson(const QJsonObject &object)
{
    SlideshowSettings settings;
    bool readable = true;
    forEachField(settings, [&](const QString &key, auto &field) {
        const auto found = object.constFind(key);
        if (found != object.constEnd())
            readable = decode(*found, field) && readable;
    });
    if (!readable)
        return std::nullopt;

    const std::optional<TransitionStyle> style
        = fromRaw<TransitionStyle>(object.value(QStringLiteral("transitionStyle")).toString());
    if (style && object.value(QStringLiteral("transitionStyle")).isString()) {
        settings.transitionStyle = *style;
        return settings;
    }
    // A record from before transition styles had only this flag; one with neither
    // plays hard cuts, as it did then.
    const QJsonValue crossFade = object.value(legacyCrossFadeKey);
    if (!crossFade.isUndefined() && !crossFade.isBool())
        return std::nullopt;
    settings.transitionStyle = crossFade.toBool() ? TransitionStyle::crossFade : TransitionStyle::none;
    return settings;
}

SlideshowSettings SlideshowSettings::load(const Preferences &preferences)
{
    if (!preferences.contains(preferenceKey))
        return {};
    if (const std::optional<QJsonObject> object = storedObject(preferences)) {
        if (std::optional<SlideshowSettings> settings = fromJson(*object))
            return *settings;
    }
    qCWarning(lcEngine, "The stored slideshow settings cannot be read; the defaults apply");
    return {};
}

std::optional<QString> SlideshowSettings::save(Preferences &preferences) const
{
    // Members a newer version wrote stay in the record; a record this version cannot
    // read at all is set aside, not overwritten unseen.
    QList<Preferences::Entry> entries;
    QJsonObject record;
    const std::optional<QJsonObject> stored = storedObject(preferences);
    if (stored && fromJson(*stored))
        record = *stored;
    else if (const std::optional<PreferenceValue> unreadable = preferences.value(preferenceKey)) {
        qCWarning(lcEngine, "Keeping the unreadable slideshow settings under %s", qUtf8Printable(unreadableKey));
        entries.append({unreadableKey, *unreadable});
    }
    const QJsonObject fields = toJson();
    for (auto it = fields.begin(); it != fields.end(); ++it)
        record.insert(it.key(), it.value());
    record.remove(legacyCrossFadeKey);
    entries.append({preferenceKey, record});
    const std::optional<QString> failure = preferences.setValues(entries);
    if (failure)
        qCWarning(lcEngine, "The slideshow settings could not be saved: %s", qUtf8Printable(*failure));
    return failure;
}

} // namespace sorvane
