#pragma once

#include "media/ImageTag.h"
#include "media/Tag.h"

#include <QLatin1StringView>
#include <QList>
#include <QObject>

namespace sorvane {

class Clock;
class Preferences;

// The user's tags and which images carry them, kept in the preferences as
// two JSON arrays. Images are told apart by the exact path: a path that
// differs only in letter case is another image. Main thread only.
class TagManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<Tag> tags READ tags NOTIFY tagsChanged)
    Q_PROPERTY(QList<ImageTag> imageTags READ imageTags NOTIFY imageTagsChanged)

public:
    static constexpr QLatin1StringView tagsKey {"com.vindra.tags"};
    static constexpr QLatin1StringView imageTagsKey {"com.vindra.imageTags"};

    // Reads both arrays now; one that is missing or does not decode as a
    // whole reads as empty, and stays stored as it is until it is next saved.
    // `preferences` and `clock` must outlive the manager.
    TagManager(Preferences &preferences, const Clock &clock, QObject *parent = nullptr);

    // SHA-256 of the path's UTF-8 bytes in lower-case hexadecimal.
    static QString pathHash(const QString &imagePath);

    // Pinned tags first, then by name.
    const QList<Tag> &tags() const { return m_tags; }
    const QList<ImageTag> &imageTags() const { return m_imageTags; }

    Tag createTag(const QString &name, const QString &color, bool isPinned);
    // Each returns false, changing nothing, when no tag has that id.
    bool renameTag(const QUuid &tagId, const QString &name);
    bool setTagColor(const QUuid &tagId, const QString &color);
    bool setTagPinned(const QUuid &tagId, bool isPinned);
    // Also takes the tag off every image.
    bool deleteTag(const QUuid &tagId);

    // False when the image already carries the tag or no tag has that id.
    bool assignTag(const QString &imagePath, const QUuid &tagId);
    // False when the image did not carry the tag.
    bool unassignTag(const QString &imagePath, const QUuid &tagId);
    // The image's tags in the order they were put on it.
    QList<Tag> tagsForImage(const QString &imagePath) const;

Q_SIGNALS:
    void tagsChanged();
    void imageTagsChanged();

private:
    Tag *findTag(const QUuid &tagId);
    // Keeps the order, stores the tags and tells observers.
    void tagsEdited();
    void saveImageTags();

    Preferences &m_preferences;
    const Clock &m_clock;
    QList<Tag> m_tags;
    QList<ImageTag> m_imageTags;
};

} // namespace sorvane
