#include "slideshow/Preferences.h"

namespace sorvane {

std::optional<QString> Preferences::setValue(const QString &key, const PreferenceValue &value)
{
    return setValues({{key, value}});
}

std::optional<bool> Preferences::boolValue(const QString &key) const
{
    return typed<bool>(key);
}

std::optional<qint64> Preferences::integerValue(const QString &key) const
{
    return typed<qint64>(key);
}

std::optional<double> Preferences::doubleValue(const QString &key) const
{
    return typed<double>(key);
}

std::optional<QString> Preferences::stringValue(const QString &key) const
{
    return typed<QString>(key);
}

std::optional<QJsonObject> Preferences::objectValue(const QString &key) const
{
    return typed<QJsonObject>(key);
}

std::optional<QJsonArray> Preferences::arrayValue(const QString &key) const
{
    return typed<QJsonArray>(key);
}

} // namespace sorvane
