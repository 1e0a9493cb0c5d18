#include "media/TagManager.h"
#include "slideshow/InMemoryPreferences.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QJsonArray>

namespace sorvane {
namespace {

const QString beach = QStringLiteral("/home/ana/Pictures/beach.jpg");
const QString beachCapital = QStringLiteral("/home/ana/Pictures/Beach.jpg");
const QString dunes = QStringLiteral("/home/ana/Pictures/dunes.jpg");
const char *beachHash = "74e932ca78c56b3cbb29ebcdc0d10b3237b4bdd15d7192149fcfc44dd167a792";

QStringList namesOf(const QList<Tag> &tags)
{
    QStringList names;
    for (const Tag &tag : tags)
        names.append(tag.name);
    return names;
}

class TagManagerTest : public testing::Test {
protected:
    InMemoryPreferences m_preferences;
    test::FakeTime m_time;
};

TEST_F(TagManagerTest, TagsAndAssignmentsAreStoredUnderTheirFieldNames)
{
    EXPECT_EQ(TagManager::pathHash(beach), QLatin1String(beachHash));
    EXPECT_EQ(TagManager::pathHash(QString::fromUtf8("/home/zoë/Füße/日本.jpg")),
        QStringLiteral("1af8282be54b662a182d2e0abeaaa8f069eaf5b8ecf47d282f419fa1ac15bb74"));

    TagManager tags(m_preferences, m_time);
    int changes = 0;
    QObject::connect(&tags, &TagManager::imageTagsChanged, [&] { ++changes; });
    const Tag tag = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), true);
    EXPECT_TRUE(tags.assignTag(beach, tag.id));
    EXPECT_FALSE(tags.assignTag(beach, tag.id)); // an image carries a tag once
    EXPECT_EQ(changes, 1);

    const QJsonObject t
        = m_preferences.arrayValue(QStringLiteral("com.vindra.tags")).value_or(QJsonArray {})[0].toObject();
    EXPECT_EQ(t,
        (QJsonObject {{"id", tag.id.toString(QUuid::WithoutBraces)}, {"name", "Family"}, {"color", "#FF9500"},
            {"isPinned", true}, {"createdAt", "2026-01-01T12:00:00.000Z"}, {"updatedAt", "2026-01-01T12:00:00.000Z"}}));
    const QJsonArray stored = m_preferences.arrayValue(QStringLiteral("com.vindra.imageTags")).value_or(QJsonArray {});
    EXPECT_EQ(stored,
        (QJsonArray {QJsonObject {
            {"imagePathHash", beachHash}, {"imagePath", beach}, {"tagId", tag.id.toString(QUuid::WithoutBraces)}}}));
}

TEST_F(TagManagerTest, TagsSortPinnedFirstThenByNameAndImagesKeepTheOrderTheirTagsWerePutOn)
{
    TagManager tags(m_preferences, m_time);
    const Tag zoo = tags.createTag(QStringLiteral("zoo"), QString(), false);
    const Tag beachTag = tags.createTag(QStringLiteral("Beach"), QString(), false);
    const Tag work = tags.createTag(QStringLiteral("Work"), QString(), true);
    const Tag alps = tags.createTag(QStringLiteral("alps"), QString(), false);
    EXPECT_EQ(namesOf(tags.tags()), (QStringList {"Work", "alps", "Beach", "zoo"}));
    m_time.advance(5);
    ASSERT_TRUE(tags.setTagPinned(zoo.id, true));
    ASSERT_TRUE(tags.renameTag(work.id, QStringLiteral("Archive")));
    ASSERT_TRUE(tags.setTagColor(zoo.id, QStringLiteral("#000000")));
    EXPECT_EQ(namesOf(tags.tags()), (QStringList {"Archive", "zoo", "alps", "Beach"}));
    EXPECT_EQ(tags.tags().at(1).createdAt, zoo.createdAt);
    EXPECT_EQ(tags.tags().at(1).updatedAt, zoo.createdAt.addSecs(5));

    const QUuid unknown = QUuid::createUuid();
    EXPECT_FALSE(tags.renameTag(unknown, QStringLiteral("X")));
    EXPECT_FALSE(tags.setTagColor(unknown, QStringLiteral("#000000")));
    EXPECT_FALSE(tags.setTagPinned(unknown, true));
    EXPECT_FALSE(tags.deleteTag(unknown));
    EXPECT_FALSE(tags.assignTag(beach, unknown));

    ASSERT_TRUE(tags.assignTag(beach, zoo.id));
    ASSERT_TRUE(tags.assignTag(dunes, alps.id));
    ASSERT_TRUE(tags.assignTag(beach, beachTag.id));
    ASSERT_TRUE(tags.assignTag(beach, work.id));
    ASSERT_TRUE(tags.assignTag(beachCapital, alps.id));
    EXPECT_EQ(namesOf(tags.tagsForImage(beach)), (QStringList {"zoo", "Beach", "Archive"}));
    // Paths differing in any way are different images.
    EXPECT_EQ(namesOf(tags.tagsForImage(beachCapital)), QStringList {"alps"});
    for (const QString &other : {beach + QLatin1Char(' '), QStringLiteral("/home/ana/Pictures//beach.jpg")})
        EXPECT_TRUE(tags.tagsForImage(other).isEmpty()) << other.toStdString();

    EXPECT_TRUE(tags.unassignTag(beach, zoo.id));
    EXPECT_FALSE(tags.unassignTag(beach, zoo.id));
    // Deleting a tag takes it off every image; the lists read back as they are.
    EXPECT_TRUE(tags.deleteTag(alps.id));
    EXPECT_TRUE(tags.tagsForImage(dunes).isEmpty());
    const TagManager reloaded(m_preferences, m_time);
    EXPECT_EQ(reloaded.tags(), tags.tags());
    EXPECT_EQ(namesOf(reloaded.tagsForImage(beach)), (QStringList {"Beach", "Archive"}));
}

TEST_F(TagManagerTest, UnreadableStoredValuesLoadAsNoneAndAreReplacedByTheNextSave)
{
    const QJsonObject good {
        {"imagePathHash", beachHash}, {"imagePath", beach}, {"tagId", "0b8e8f4e-6f55-4a4c-9f3e-0d6a1c2f4b11"}};
    QJsonObject badId = good, missingPath = good;
    badId.insert("tagId", "not-a-uuid");
    missingPath.remove("imagePath");
    // What another version or a damaged file may leave under a key.
    const std::pair<const char *, PreferenceValue> values[]
        = {{"object instead of array", good}, {"one bad id among good", QJsonArray {good, badId}},
            {"a missing field", QJsonArray {missingPath}}, {"not an object", QJsonArray {good, 7}}};
    for (const auto &[what, value] : values) {
        InMemoryPreferences preferences;
        const Tag family = TagManager(preferences, m_time).createTag(QStringLiteral("Family"), QString(), false);
        ASSERT_EQ(preferences.setValue(QStringLiteral("com.vindra.imageTags"), value), std::nullopt);
        TagManager tags(preferences, m_time);
        EXPECT_TRUE(tags.imageTags().isEmpty()) << what;
        EXPECT_EQ(preferences.value(QStringLiteral("com.vindra.imageTags")), value) << what;
        ASSERT_TRUE(tags.assignTag(dunes, family.id)) << what;
        ASSERT_EQ(TagManager(preferences, m_time).imageTags().size(), 1) << what;

        ASSERT_EQ(preferences.setValue(QStringLiteral("com.vindra.tags"), value), std::nullopt);
        TagManager noTags(preferences, m_time);
        EXPECT_TRUE(noTags.tags().isEmpty()) << what;
        noTags.createTag(QStringLiteral("Fresh"), QString(), false);
        EXPECT_EQ(namesOf(TagManager(preferences, m_time).tags()), QStringList {"Fresh"}) << what;
    }
}

} // namespace
} // namespace sorvane
