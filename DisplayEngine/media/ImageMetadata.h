#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace sorvane {

// What is known about a file beyond its URL: what an online store reported
// for it, or what was read from its EXIF.
struct ImageMetadata {
    // A GPS position in degrees.
    struct Location {
        double latitude = 0.0;
        double longitude = 0.0;

        QJsonObject toJson() const;
        static std::optional<Location> fromJson(const QJsonObject &object, QString *error = nullptr);

        bool operator==(const Location &) const = default;
    };

    // Store or catalogue identifier of the file.
    QString id;
    // File name as the store reports it.
    QString name;
    // Size in bytes.
    std::optional<qint64> size;
    std::optional<QString> mimeType;
    std::optional<QDateTime> createdDate;
    std::optional<QDateTime> modifiedDate;
    std::optional<int> width;
    std::optional<int> height;
    std::optional<QString> thumbnailLink;
    // The file's page in the store's web interface.
    std::optional<QString> webViewLink;
    std::optional<QString> downloadUrl;
    std::optional<QString> cameraMake;
    std::optional<QString> cameraModel;
    std::optional<double> fNumber;
    // As text, since cameras report it as a fraction such as "1/250".
    std::optional<QString> exposureTime;
    std::optional<int> iso;
    // In millimetres.
    std::optional<double> focalLength;
    std::optional<QDateTime> dateTaken;
    // Free-form labels from the store.
    QStringList tags;
    std::optional<Location> location;

    // Keys are the field names; absent optionals are not written; dates are
    // ISO 8601 UTC.
    QJsonObject toJson() const;
    // Fails on a missing required key (`id`, `name`, `tags`, and inside a
    // present `location` both coordinates) or a wrongly typed value; `error`
    // then names the key.
    static std::optional<ImageMetadata> fromJson(const QJsonObject &object, QString *error = nullptr);

    bool operator==(const ImageMetadata &) const = default;
};

} // namespace sorvane
