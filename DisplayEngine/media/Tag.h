#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace sorvane {

// A label the user puts on images.
struct Tag {
    QUuid id;
    QString name;
    // As the user interface writes colours (e.g. "#FF9500"); kept as given.
    QString color;
    // Pinned tags are offered first.
    bool isPinned = false;
    QDateTime createdAt;
    QDateTime updatedAt;

    // Keys are the field names; the id without braces, dates ISO 8601 UTC.
    QJsonObject toJson() const;
    // Fails on a missing or wrongly typed field; `error` then names the key.
    static std::optional<Tag> fromJson(const QJsonObject &object, QString *error = nullptr);

    bool operator==(const Tag &) const = default;
};

} // namespace sorvane
