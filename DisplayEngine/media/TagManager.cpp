#include "media/TagManager.h"

#include "EngineLog.h"
#include "bundle/Sha256.h"
#include "slideshow/Clock.h"
#include "slideshow/Preferences.h"

#include <QJsonArray>

#include <algorithm>

namespace sorvane {
namespace {

// The whole array or nothing: one record that does not decode makes the
// stored value unreadable.
template <typename Record> QList<Record> loadList(const Preferences &preferences, const QString &key)
{
    const std::optional<QJsonArray> array = preferences.arrayValue(key);
    if (!array)
        return {};
    QList<Record> records;
    records.reserve(array->size());
    for (const QJsonValue &element : *array) {
        if (!element.isObject())
            return {};
        std::optional<Record> record = Record::fromJson(element.toObject());
        if (!record)
            return {};
        records.append(std::move(*record));
    }
    return records;
}

template <typename Record> void saveList(Preferences &preferences, const QString &key, const QList<Record> &records)
{
    QJsonArray array;
    for (const Record &record : records)
        array.append(record.toJson());
    if (const std::optional<QString> error = preferences.setValue(key, array))
        qCWarning(lcEngine, "Could not save %s: %s", qUtf8Printable(key), qUtf8Printable(*error));
}

bool shownBefore(const Tag &a, const Tag &b)
{
    if (a.isPinned != b.isPinned)
        return a.isPinned;
    if (const int byName = QString::compare(a.name, b.name, Qt::CaseInsensitive))
        return byName < 0;
    return a.name < b.name;
}

} // namespace

TagManager::TagManager(Preferences &preferences, const Clock &clock, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_clock(clock), m_tags(loadList<Tag>(preferences, QString(tagsKey))),
      m_imageTags(loadList<ImageTag>(preferences, QString(imageTagsKey)))
{
}

QString TagManager::pathHash(const QString &imagePath)
{
    return Sha256::ofBytes(imagePath.toUtf8());
}

Tag TagManager::createTag(const QString &name, const QString &color, bool isPinned)
{
    const QDateTime now = m_clock.nowUtc();
    const Tag tag {QUuid::createUuid(), name, color, isPinned, now, now};
    m_tags.append(tag);
    tagsEdited();
    return tag;
}

Tag *TagManager::findTag(const QUuid &tagId)
{
    const auto found = std::find_if(m_tags.begin(), m_tags.end(), [&](const Tag &tag) { return tag.id == tagId; });
    return found == m_tags.end() ? nullptr : &*found;
}

bool TagManager::renameTag(const QUuid &tagId, const QString &name)
{
    Tag *tag = findTag(tagId);
    if (!tag)
        return false;
    tag->name = name;
    tag->updatedAt = m_clock.nowUtc();
    tagsEdited();
    return true;
}

bool TagManager::setTagColor(const QUuid &tagId, const QString &color)
{
    Tag *tag = findTag(tagId);
    if (!tag)
        return false;
    tag->color = color;
    tag->updatedAt = m_clock.nowUtc();
    tagsEdited();
    return true;
}

bool TagManager::setTagPinned(const QUuid &tagId, bool isPinned)
{
    Tag *tag = findTag(tagId);
    if (!tag)
        return false;
    tag->isPinned = isPinned;
    tag->updatedAt = m_clock.nowUtc();
    tagsEdited();
    return true;
}

bool TagManager::deleteTag(const QUuid &tagId)
{
    if (!m_tags.removeIf([&](const Tag &tag) { return tag.id == tagId; }))
        return false;
    saveList(m_preferences, QString(tagsKey), m_tags);
    Q_EMIT tagsChanged();
    if (m_imageTags.removeIf([&](const ImageTag &imageTag) { return imageTag.tagId == tagId; }))
        saveImageTags();
    return true;
}

bool TagManager::assignTag(const QString &imagePath, const QUuid &tagId)
{
    if (!findTag(tagId))
        return false;
    const QString hash = pathHash(imagePath);
    const bool alreadyThere = std::any_of(m_imageTags.cbegin(), m_imageTags.cend(),
        [&](const ImageTag &imageTag) { return imageTag.imagePathHash == hash && imageTag.tagId == tagId; });
    if (alreadyThere)
        return false;
    m_imageTags.append({hash, imagePath, tagId});
    saveImageTags();
    return true;
}

bool TagManager::unassignTag(const QString &imagePath, const QUuid &tagId)
{
    const QString hash = pathHash(imagePath);
    if (!m_imageTags.removeIf(
            [&](const ImageTag &imageTag) { return imageTag.imagePathHash == hash && imageTag.tagId == tagId; }))
        return false;
    saveImageTags();
    return true;
}

QList<Tag> TagManager::tagsForImage(const QString &imagePath) const
{
    const QString hash = pathHash(imagePath);
    QList<Tag> found;
    for (const ImageTag &imageTag : m_imageTags) {
        if (imageTag.imagePathHash != hash)
            continue;
        const auto tag = std::find_if(
            m_tags.cbegin(), m_tags.cend(), [&](const Tag &candidate) { return candidate.id == imageTag.tagId; });
        if (tag != m_tags.cend())
            found.append(*tag);
    }
    return found;
}

void TagManager::tagsEdited()
{
    std::stable_sort(m_tags.begin(), m_tags.end(), shownBefore);
    saveList(m_preferences, QString(tagsKey), m_tags);
    Q_EMIT tagsChanged();
}

void TagManager::saveImageTags()
{
    saveList(m_preferences, QString(imageTagsKey), m_imageTags);
    Q_EMIT imageTagsChanged();
}

} // namespace sorvane
