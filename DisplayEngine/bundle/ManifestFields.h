#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>

#include <optional>

namespace sorvane::ManifestFields {

// Tolerant typed reads: a member that is absent, null or of another JSON type
// reads as absent; none of them can fail.
std::optional<QString> string(const QJsonValue &value);
// Any JSON number; a fraction is truncated toward zero. A number that does not
// fit a 64-bit integer reads as absent. true/false are never numbers.
std::optional<qint64> integer(const QJsonValue &value);
std::optional<double> number(const QJsonValue &value);
std::optional<bool> boolean(const QJsonValue &value);
std::optional<QJsonObject> object(const QJsonValue &value);

// Reads the known members of one object by name and counts the rest without
// walking the keys: unknown = size - known members found.
class MemberReader {
public:
    explicit MemberReader(const QJsonObject &object) : m_object(object) { }
    QJsonValue take(QLatin1StringView key)
    {
        QJsonValue value = m_object.value(key);
        if (!value.isUndefined())
            ++m_found;
        return value;
    }
    int unknownCount() const { return int(m_object.size()) - m_found; }

private:
    const QJsonObject &m_object;
    int m_found = 0;
};

} // namespace sorvane::ManifestFields
