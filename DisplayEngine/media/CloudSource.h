#pragma once

#include "media/CloudProviderType.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace sorvane {

// Where an item that comes from an online store lives in that store.
struct CloudSource {
    CloudProviderType provider = CloudProviderType::googleDrive;
    QString accountId;
    QString imageId;
    // Remote thumbnail address given by the store.
    std::optional<QString> thumbnailURL;
    // Set once the thumbnail has been fetched to the local cache.
    std::optional<QString> cachedThumbnailPath;

    // Keys are the field names; absent optionals are not written.
    QJsonObject toJson() const;
    // Fails on a missing required key, a wrongly typed value or an unknown
    // provider; `error` then names the key.
    static std::optional<CloudSource> fromJson(const QJsonObject &object, QString *error = nullptr);

    bool operator==(const CloudSource &) const = default;
};

} // namespace sorvane
