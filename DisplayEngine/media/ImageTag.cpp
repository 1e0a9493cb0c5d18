#include "media/ImageTag.h"

#include "media/JsonReader.h"

namespace sorvane {
namespace {

constexpr QLatin1StringView imagePathHashKey("imagePathHash");
constexpr QLatin1StringView imagePathKey("imagePath");
constexpr QLatin1StringView tagIdKey("tagId");

} // namespace

QJsonObject ImageTag::toJson() const
{
    return {
        {imagePathHashKey, imagePathHash}, {imagePathKey, imagePath}, {tagIdKey, tagId.toString(QUuid::WithoutBraces)}};
}

std::optional<ImageTag> ImageTag::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    ImageTag imageTag;
    imageTag.imagePathHash = reader.string(imagePathHashKey);
    imageTag.imagePath = reader.string(imagePathKey);
    imageTag.tagId = reader.uuid(tagIdKey);
    if (!reader.finish(error))
        return std::nullopt;
    return imageTag;
}

} // namespace sorvane
