#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace sorvane {

// One folder of an online store or of the local disk, as a folder picker lists it.
struct StorageFolder {
    QString id;
    // Raw value of the store's CloudProviderType. Kept as text because local
    // folders are listed too and have no store.
    QString provider;
    // Full path of the folder inside its store.
    QString path;
    QString name;
    // Absent at the root.
    std::optional<QString> parentPath;
    std::optional<int> imageCount;
    std::optional<QDateTime> lastModified;
    // The store's change tag: tells whether a cached listing is stale.
    std::optional<QString> etag;

    // Keys are the field names; absent optionals are not written; dates are
    // ISO 8601 UTC.
    QJsonObject toJson() const;
    // Fails on a missing required key or a wrongly typed value; `error` then
    // names the key.
    static std::optional<StorageFolder> fromJson(const QJsonObject &object, QString *error = nullptr);

    bool operator==(const StorageFolder &) const = default;
};

// Hashes the identity only, which equal folders always share.
size_t qHash(const StorageFolder &folder, size_t seed = 0) noexcept;

} // namespace sorvane
