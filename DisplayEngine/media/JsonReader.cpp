#include "media/JsonReader.h"

#include <QJsonArray>
#include <QTimeZone>

#include <limits>

namespace sorvane {

JsonReader::JsonReader(const QJsonObject &object) : m_object(object) { }

void JsonReader::fail(QLatin1StringView key, const QString &message)
{
    if (ok())
        m_error = QStringLiteral("key \"%1\": %2").arg(key, message);
}

bool JsonReader::finish(QString *error) const
{
    if (!ok() && error)
        *error = m_error;
    return ok();
}

std::optional<QJsonValue> JsonReader::present(QLatin1StringView key)
{
    if (!ok())
        return std::nullopt;
    const QJsonValue value = m_object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    return value;
}

std::optional<QJsonValue> JsonReader::required(QLatin1StringView key)
{
    if (!ok())
        return std::nullopt;
    std::optional<QJsonValue> value = present(key);
    if (!value)
        m_error = QStringLiteral("missing key \"%1\"").arg(key);
    return value;
}

QString JsonReader::string(QLatin1StringView key)
{
    const auto value = required(key);
    if (value && !value->isString())
        fail(key, QStringLiteral("expected a string"));
    return ok() && value ? value->toString() : QString();
}

std::optional<QString> JsonReader::optionalString(QLatin1StringView key)
{
    const auto value = present(key);
    if (!value)
        return std::nullopt;
    if (!value->isString()) {
        fail(key, QStringLiteral("expected a string"));
        return std::nullopt;
    }
    return value->toString();
}

double JsonReader::number(QLatin1StringView key)
{
    const auto value = required(key);
    if (value && !value->isDouble())
        fail(key, QStringLiteral("expected a number"));
    return ok() && value ? value->toDouble() : 0.0;
}

std::optional<double> JsonReader::optionalNumber(QLatin1StringView key)
{
    const auto value = present(key);
    if (!value)
        return std::nullopt;
    if (!value->isDouble()) {
        fail(key, QStringLiteral("expected a number"));
        return std::nullopt;
    }
    return value->toDouble();
}

std::optional<qint64> JsonReader::optionalInt64(QLatin1StringView key)
{
    const auto value = present(key);
    if (!value)
        return std::nullopt;
    // toInteger() falls back to its argument for fractions and out-of-range
    // numbers; two different fallbacks only agree on a true integer.
    const qint64 integer = value->toInteger(0);
    if (!value->isDouble() || integer != value->toInteger(1)) {
        fail(key, QStringLiteral("expected an integer"));
        return std::nullopt;
    }
    return integer;
}

std::optional<int> JsonReader::optionalInt(QLatin1StringView key)
{
    const std::optional<qint64> value = optionalInt64(key);
    if (!value)
        return std::nullopt;
    if (*value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max()) {
        fail(key, QStringLiteral("integer out of range"));
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

std::optional<QDateTime> JsonReader::optionalDate(QLatin1StringView key)
{
    const std::optional<QString> text = optionalString(key);
    if (!text)
        return std::nullopt;
    QDateTime date = QDateTime::fromString(*text, Qt::ISODateWithMs);
    if (!date.isValid()) {
        fail(key, QStringLiteral("expected an ISO 8601 date, got \"%1\"").arg(*text));
        return std::nullopt;
    }
    // Every date this system writes is UTC; a zone-less text must not shift
    // with the reading machine's time zone.
    if (date.timeSpec() == Qt::LocalTime)
        date = QDateTime(date.date(), date.time(), QTimeZone::utc());
    return date.toUTC();
}

QDateTime JsonReader::date(QLatin1StringView key)
{
    if (!required(key))
        return {};
    return optionalDate(key).value_or(QDateTime());
}

bool JsonReader::boolean(QLatin1StringView key)
{
    const auto value = required(key);
    if (value && !value->isBool())
        fail(key, QStringLiteral("expected a Boolean"));
    return ok() && value && value->toBool();
}

QUuid JsonReader::uuid(QLatin1StringView key)
{
    const QString text = string(key);
    if (!ok())
        return {};
    const QUuid id = QUuid::fromString(text);
    if (id.isNull())
        fail(key, QStringLiteral("expected a UUID, got \"%1\"").arg(text));
    return id;
}

QStringList JsonReader::stringList(QLatin1StringView key)
{
    const auto value = required(key);
    if (!value)
        return {};
    if (!value->isArray()) {
        fail(key, QStringLiteral("expected an array of strings"));
        return {};
    }
    const QJsonArray array = value->toArray();
    QStringList list;
    list.reserve(array.size());
    for (const QJsonValue &element : array) {
        if (!element.isString()) {
            fail(key, QStringLiteral("expected an array of strings"));
            return {};
        }
        list.append(element.toString());
    }
    return list;
}

std::optional<QJsonObject> JsonReader::optionalObject(QLatin1StringView key)
{
    const auto value = present(key);
    if (!value)
        return std::nullopt;
    if (!value->isObject()) {
        fail(key, QStringLiteral("expected an object"));
        return std::nullopt;
    }
    return value->toObject();
}

} // namespace sorvane
