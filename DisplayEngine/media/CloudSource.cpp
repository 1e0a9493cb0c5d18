#include "media/CloudSource.h"

#include "media/JsonReader.h"
#include "media/JsonWriter.h"

namespace sorvane {

namespace {
constexpr QLatin1StringView providerKey("provider");
constexpr QLatin1StringView accountIdKey("accountId");
constexpr QLatin1StringView imageIdKey("imageId");
constexpr QLatin1StringView thumbnailURLKey("thumbnailURL");
constexpr QLatin1StringView cachedThumbnailPathKey("cachedThumbnailPath");
} // namespace

QJsonObject CloudSource::toJson() const
{
    JsonWriter writer;
    writer.set(providerKey, toRaw(provider));
    writer.set(accountIdKey, accountId);
    writer.set(imageIdKey, imageId);
    writer.setIfPresent(thumbnailURLKey, thumbnailURL);
    writer.setIfPresent(cachedThumbnailPathKey, cachedThumbnailPath);
    return writer.object();
}

std::optional<CloudSource> CloudSource::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    CloudSource source;
    source.provider = reader.rawValue<CloudProviderType>(providerKey).value_or(source.provider);
    source.accountId = reader.string(accountIdKey);
    source.imageId = reader.string(imageIdKey);
    source.thumbnailURL = reader.optionalString(thumbnailURLKey);
    source.cachedThumbnailPath = reader.optionalString(cachedThumbnailPathKey);
    if (!reader.finish(error))
        return std::nullopt;
    return source;
}

} // namespace sorvane
