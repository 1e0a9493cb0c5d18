// Fuzz target for the tag store: every input is the preferences.json that holds
// "com.vindra.tags" and "com.vindra.imageTags", as another version or a damaged
// disk may have left it.
//
// Each list reads whole or not at all; an image only ever shows tags that exist;
// deleting a tag takes it off every image; and once written, the lists read
// back exactly as they were written.

#include "FuzzSupport.h"
#include "media/TagManager.h"
#include "slideshow/Clock.h"
#include "slideshow/PreferenceStore.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>

using namespace sorvane;

namespace {

class FixedClock final : public Clock {
public:
    double monotonicSeconds() const override { return 1.0; }
    QDateTime nowUtc() const override { return QDateTime(QDate(2024, 5, 1), QTime(12, 0), Qt::UTC); }
};

qsizetype storedCount(const Preferences &preferences, QLatin1StringView key)
{
    const std::optional<QJsonArray> array = preferences.arrayValue(QString(key));
    return array ? array->size() : 0;
}

bool representable(const Preferences &preferences, QLatin1StringView key)
{
    const std::optional<QJsonArray> array = preferences.arrayValue(QString(key));
    return !array || fuzz::utf8Representable(QJsonValue(*array));
}

bool hasTag(const TagManager &tags, const QUuid &id)
{
    return std::any_of(tags.tags().cbegin(), tags.tags().cend(), [&](const Tag &tag) { return tag.id == id; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::quietMessages();
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvane-fuzz-tags-XXXXXX"));
    static const FixedClock clock;
    fuzz::writeFile(folder.filePath(QStringLiteral("preferences.json")), fuzz::bytes(data, size));

    PreferenceStore preferences(folder.path());
    const bool faithful
        = representable(preferences, TagManager::tagsKey) && representable(preferences, TagManager::imageTagsKey);
    TagManager tags(preferences, clock);
    const qsizetype tagCount = tags.tags().size();
    const qsizetype imageTagCount = tags.imageTags().size();
    FUZZ_CHECK(tagCount == 0 || tagCount == storedCount(preferences, TagManager::tagsKey));
    FUZZ_CHECK(imageTagCount == 0 || imageTagCount == storedCount(preferences, TagManager::imageTagsKey));

    for (const ImageTag &imageTag : tags.imageTags()) {
        for (const Tag &shown : tags.tagsForImage(imageTag.imagePath))
            FUZZ_CHECK(hasTag(tags, shown.id));
    }

    // A write settles the lists: they read back as written.
    if (tagCount > 0) {
        const Tag first = tags.tags().first();
        const QString image = QStringLiteral("/fuzz/new.jpg");
        const bool carried = std::any_of(tags.imageTags().cbegin(), tags.imageTags().cend(),
            [&](const ImageTag &i) { return i.imagePathHash == TagManager::pathHash(image) && i.tagId == first.id; });
        FUZZ_CHECK(tags.setTagPinned(first.id, first.isPinned));
        FUZZ_CHECK(tags.assignTag(image, first.id) != carried);
        PreferenceStore reread(folder.path());
        const TagManager reloaded(reread, clock);
        if (faithful) {
            FUZZ_CHECK(reloaded.tags() == tags.tags());
            FUZZ_CHECK(reloaded.imageTags() == tags.imageTags());
        }
        const QList<Tag> onImage = tags.tagsForImage(image);
        FUZZ_CHECK(std::any_of(onImage.cbegin(), onImage.cend(), [&](const Tag &tag) { return tag.id == first.id; }));

        // Deleting every tag leaves no image carrying one of them.
        const QList<Tag> all = tags.tags();
        for (const Tag &tag : all) {
            tags.deleteTag(tag.id);
            FUZZ_CHECK(!hasTag(tags, tag.id));
            FUZZ_CHECK(std::none_of(tags.imageTags().cbegin(), tags.imageTags().cend(),
                [&](const ImageTag &imageTag) { return imageTag.tagId == tag.id; }));
        }
        FUZZ_CHECK(tags.tags().isEmpty());
    }
    return 0;
}
