#pragma once

#include "media/RawValue.h"

#include <QDateTime>
#include <QJsonObject>
#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace sorvane {

// Strict keyed reads for the media records. A required key must be present
// and of its type; an optional key that is absent or null reads as nothing,
// but one present with the wrong type is an error, so that a corrupt record is
// not taken for a partial one. The first error is kept and the later reads
// become no-ops returning defaults, which lets a decoder read every field
// straight through and check once at the end.
class JsonReader {
public:
    explicit JsonReader(const QJsonObject &object);

    QString string(QLatin1StringView key);
    std::optional<QString> optionalString(QLatin1StringView key);
    double number(QLatin1StringView key);
    std::optional<double> optionalNumber(QLatin1StringView key);
    std::optional<qint64> optionalInt64(QLatin1StringView key);
    std::optional<int> optionalInt(QLatin1StringView key);
    // ISO 8601; a text without a zone is taken as UTC. Always returned in UTC.
    std::optional<QDateTime> optionalDate(QLatin1StringView key);
    QDateTime date(QLatin1StringView key);
    bool boolean(QLatin1StringView key);
    // Any of the usual spellings: with or without braces, either letter case.
    QUuid uuid(QLatin1StringView key);
    QStringList stringList(QLatin1StringView key);
    std::optional<QJsonObject> optionalObject(QLatin1StringView key);

    // A string that must be one of the raw values of `Enum`.
    template <typename Enum> std::optional<Enum> rawValue(QLatin1StringView key)
    {
        const QString raw = string(key);
        if (!ok())
            return std::nullopt;
        const std::optional<Enum> value = fromRaw<Enum>(raw);
        if (!value)
            fail(key, QStringLiteral("unknown value \"%1\"").arg(raw));
        return value;
    }

    // Records the error of a nested record read under `key`.
    void fail(QLatin1StringView key, const QString &message);

    bool ok() const { return m_error.isEmpty(); }
    // Returns ok(); on failure also writes the error to `error` when given.
    bool finish(QString *error) const;

private:
    // The value under `key` if reading should go on: not failed, present, not null.
    std::optional<QJsonValue> present(QLatin1StringView key);
    std::optional<QJsonValue> required(QLatin1StringView key);

    QJsonObject m_object;
    QString m_error;
};

} // namespace sorvane
