#include "media/Tag.h"

#include "media/JsonReader.h"
#include "media/JsonWriter.h"

namespace sorvane {
namespace {

constexpr QLatin1StringView idKey("id");
constexpr QLatin1StringView nameKey("name");
constexpr QLatin1StringView colorKey("color");
constexpr QLatin1StringView isPinnedKey("isPinned");
constexpr QLatin1StringView createdAtKey("createdAt");
constexpr QLatin1StringView updatedAtKey("updatedAt");

} // namespace

QJsonObject Tag::toJson() const
{
    JsonWriter writer;
    writer.set(idKey, id.toString(QUuid::WithoutBraces));
    writer.set(nameKey, name);
    writer.set(colorKey, color);
    writer.set(createdAtKey, createdAt);
    writer.set(updatedAtKey, updatedAt);
    QJsonObject object = writer.object();
    object.insert(isPinnedKey, isPinned);
    return object;
}

std::optional<Tag> Tag::fromJson(const QJsonObject &object, QString *error)
{
    JsonReader reader(object);
    Tag tag;
    tag.id = reader.uuid(idKey);
    tag.name = reader.string(nameKey);
    tag.color = reader.string(colorKey);
    tag.isPinned = reader.boolean(isPinnedKey);
    tag.createdAt = reader.date(createdAtKey);
    tag.updatedAt = reader.date(updatedAtKey);
    if (!reader.finish(error))
        return std::nullopt;
    return tag;
}

} // namespace sorvane
