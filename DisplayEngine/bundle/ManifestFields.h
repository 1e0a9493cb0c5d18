#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QString>

#include <initializer_list>
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

// How many members of `object` are not among `known`.
int countUnknown(const QJsonObject &object, std::initializer_list<QLatin1StringView> known);

} // namespace sorvane::ManifestFields
