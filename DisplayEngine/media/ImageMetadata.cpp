#include "media/ImageMetadata.h"

#include "media/JsonReader.h"
#include "media/JsonWriter.h"

namespace sorvane {

namespace {
constexpr QLatin1StringView latitudeKey("latitude");
constexpr QLatin1StringView longitudeKey("longitude");

constexpr QLatin1StringView idKey("id");
constexpr QLatin1StringView nameKey("name");
constexpr QLatin1StringView sizeKey("size");
constexpr QLatin1StringView mimeTypeKey("mimeType");
constexpr QLatin1StringView createdDateKey("createdDate");
constexpr QLatin1StringView modifiedDateKey("modifiedDate");
constexpr QLatin1StringView widthKey("width");
constexpr QLatin1StringView heightKey("height");
constexpr QLatin1StringView thumbnailLinkKey("thumbnailLink");
constexpr QLatin1StringView webViewLinkKey("webViewLink");
constexpr QLatin1StringView downloadUrlKey("downloadUrl");
constexpr QLatin1StringView cameraMakeKey("cameraMake");
constexpr QLatin1StringView cameraModelKey("cameraModel");
constexpr QLatin1StringView fNumberKey("fNumber");
constexpr QLatin1StringView exposureTimeKey("exposureTime");
constexpr QLatin1StringView isoKey("iso");
constexpr QLatin1StringView focalLengthKey("focalLength");
constexpr QLatin1StringView dateTakenKey("dateTaken");
constexpr QLatin1StringView tagsKey("tags");
constexpr QLatin1StringView locationKey("location");
} // namespace

QJsonObject ImageMetadata::Location::toJson() const
{
    JsonWriter writer;
    writer.set(latitudeKey, latitude);
    writer.set(longitudeKey, longitude);
    return writer.object();
}

std::optional<ImageMetadata::Location> ImageMetadata::Location::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    Location location;
    location.latitude = reader.number(latitudeKey);
    location.longitude = reader.number(longitudeKey);
    if (!reader.finish(error))
        return std::nullopt;
    return location;
}

QJsonObject ImageMetadata::toJson() const
{
    JsonWriter writer;
    writer.set(idKey, id);
    writer.set(nameKey, name);
    writer.setIfPresent(sizeKey, size);
    writer.setIfPresent(mimeTypeKey, mimeType);
    writer.setIfPresent(createdDateKey, createdDate);
    writer.setIfPresent(modifiedDateKey, modifiedDate);
    writer.setIfPresent(widthKey, width);
    writer.setIfPresent(heightKey, height);
    writer.setIfPresent(thumbnailLinkKey, thumbnailLink);
    writer.setIfPresent(webViewLinkKey, webViewLink);
    writer.setIfPresent(downloadUrlKey, downloadUrl);
    writer.setIfPresent(cameraMakeKey, cameraMake);
    writer.setIfPresent(cameraModelKey, cameraModel);
    writer.setIfPresent(fNumberKey, fNumber);
    writer.setIfPresent(exposureTimeKey, exposureTime);
    writer.setIfPresent(isoKey, iso);
    writer.setIfPresent(focalLengthKey, focalLength);
    writer.setIfPresent(dateTakenKey, dateTaken);
    writer.set(tagsKey, tags);
    if (location)
        writer.set(locationKey, location->toJson());
    return writer.object();
}

std::optional<ImageMetadata> ImageMetadata::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    ImageMetadata metadata;
    metadata.id = reader.string(idKey);
    metadata.name = reader.string(nameKey);
    metadata.size = reader.optionalInt64(sizeKey);
    metadata.mimeType = reader.optionalString(mimeTypeKey);
    metadata.createdDate = reader.optionalDate(createdDateKey);
    metadata.modifiedDate = reader.optionalDate(modifiedDateKey);
    metadata.width = reader.optionalInt(widthKey);
    metadata.height = reader.optionalInt(heightKey);
    metadata.thumbnailLink = reader.optionalString(thumbnailLinkKey);
    metadata.webViewLink = reader.optionalString(webViewLinkKey);
    metadata.downloadUrl = reader.optionalString(downloadUrlKey);
    metadata.cameraMake = reader.optionalString(cameraMakeKey);
    metadata.cameraModel = reader.optionalString(cameraModelKey);
    metadata.fNumber = reader.optionalNumber(fNumberKey);
    metadata.exposureTime = reader.optionalString(exposureTimeKey);
    metadata.iso = reader.optionalInt(isoKey);
    metadata.focalLength = reader.optionalNumber(focalLengthKey);
    metadata.dateTaken = reader.optionalDate(dateTakenKey);
    metadata.tags = reader.stringList(tagsKey);
    if (const std::optional<QJsonObject> location = reader.optionalObject(locationKey)) {
        QString locationError;
        metadata.location = Location::fromJson(*location, &locationError);
        if (!metadata.location)
            reader.fail(locationKey, locationError);
    }
    if (!reader.finish(error))
        return std::nullopt;
    return metadata;
}

} // namespace sorvane
