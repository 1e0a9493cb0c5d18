#include "bundle/ManifestFields.h"

#include <cmath>

namespace sorvane::ManifestFields {

std::optional<QString> string(const QJsonValue &value)
{
    if (!value.isString())
        return std::nullopt;
    return value.toString();
}

std::optional<qint64> integer(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    // Whole numbers within 64 bits are held exactly by the parser.
    constexpr qint64 notWhole = std::numeric_limits<qint64>::min();
    const qint64 exact = value.toInteger(notWhole);
    if (exact != notWhole)
        return exact;
    const double truncated = std::trunc(value.toDouble());
    // 2^63 is exactly representable as a double; anything at or beyond it does not fit.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(truncated) || truncated >= limit || truncated < -limit)
        return std::nullopt;
    return static_cast<qint64>(truncated);
}

std::optional<double> number(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    return value.toDouble();
}

std::optional<bool> boolean(const QJsonValue &value)
{
    if (!value.isBool())
        return std::nullopt;
    return value.toBool();
}

std::optional<QJsonObject> object(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    return value.toObject();
}

} // namespace sorvane::ManifestFields
