#include "slideshow/Preferences.h"

#include <cmath>
#include <limits>

namespace sorvane {
namespace {

std::optional<double> numberIn(const PreferenceValue &stored)
{
    if (const double *number = std::get_if<double>(&stored))
        return *number;
    if (const qint64 *integer = std::get_if<qint64>(&stored))
        return double(*integer);
    if (const QString *text = std::get_if<QString>(&stored)) {
        bool ok = false;
        const double number = text->trimmed().toDouble(&ok);
        if (ok)
            return number;
    }
    return std::nullopt;
}

} // namespace

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

std::optional<double> Preferences::numberValue(const QString &key) const
{
    const std::optional<PreferenceValue> stored = value(key);
    return stored ? numberIn(*stored) : std::nullopt;
}

std::optional<qint64> Preferences::wholeNumberValue(const QString &key) const
{
    const std::optional<PreferenceValue> stored = value(key);
    if (!stored)
        return std::nullopt;
    // Exact for integers beyond 2^53, which a trip through double would round.
    if (const qint64 *integer = std::get_if<qint64>(&*stored))
        return *integer;
    const std::optional<double> number = numberIn(*stored);
    if (!number || std::isnan(*number))
        return std::nullopt;
    // 2^63 is the first double past the range; -2^63 is its lowest value exactly.
    constexpr double limit = 9223372036854775808.0;
    if (*number >= limit)
        return std::numeric_limits<qint64>::max();
    if (*number <= -limit)
        return std::numeric_limits<qint64>::min();
    return qint64(std::trunc(*number));
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
