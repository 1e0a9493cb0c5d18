#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace sorvane {

// One tag put on one image. Images are found by `imagePathHash`; the path is
// kept for display and maintenance.
struct ImageTag {
    // SHA-256 of the path's UTF-8 bytes, 64 lower-case hexadecimal digits.
    QString imagePathHash;
    QString imagePath;
    QUuid tagId;

    // Keys are the field names; the id without braces.
    QJsonObject toJson() const;
    // Fails on a missing or wrongly typed field; `error` then names the key.
    static std::optional<ImageTag> fromJson(const QJsonObject &object, QString *error = nullptr);

    bool operator==(const ImageTag &) const = default;
};

} // namespace sorvane
