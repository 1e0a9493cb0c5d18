#include "media/StorageFolder.h"

#include "media/JsonReader.h"
#include "media/JsonWriter.h"

#include <QHashFunctions>

namespace sorvane {

namespace {
constexpr QLatin1StringView idKey("id");
constexpr QLatin1StringView providerKey("provider");
constexpr QLatin1StringView pathKey("path");
constexpr QLatin1StringView nameKey("name");
constexpr QLatin1StringView parentPathKey("parentPath");
constexpr QLatin1StringView imageCountKey("imageCount");
constexpr QLatin1StringView lastModifiedKey("lastModified");
constexpr QLatin1StringView etagKey("etag");
} // namespace

QJsonObject StorageFolder::toJson() const
{
    JsonWriter writer;
    writer.set(idKey, id);
    writer.set(providerKey, provider);
    writer.set(pathKey, path);
    writer.set(nameKey, name);
    writer.setIfPresent(parentPathKey, parentPath);
    writer.setIfPresent(imageCountKey, imageCount);
    writer.setIfPresent(lastModifiedKey, lastModified);
    writer.setIfPresent(etagKey, etag);
    return writer.object();
}

std::optional<StorageFolder> StorageFolder::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    StorageFolder folder;
    folder.id = reader.string(idKey);
    folder.provider = reader.string(providerKey);
    folder.path = reader.string(pathKey);
    folder.name = reader.string(nameKey);
    folder.parentPath = reader.optionalString(parentPathKey);
    folder.imageCount = reader.optionalInt(imageCountKey);
    folder.lastModified = reader.optionalDate(lastModifiedKey);
    folder.etag = reader.optionalString(etagKey);
    if (!reader.finish(error))
        return std::nullopt;
    return folder;
}

size_t qHash(const StorageFolder &folder, size_t seed) noexcept
{
    return qHash(folder.id, seed);
}

} // namespace sorvane
