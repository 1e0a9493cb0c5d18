#include "media/TagManager.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/PreferenceStore.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QTemporaryDir>

namespace sorvane {
namespace {

const QString beach = QStringLiteral("/home/ana/Pictures/beach.jpg");
const QString beachCapital = QStringLiteral("/home/ana/Pictures/Beach.jpg");
const QString dunes = QStringLiteral("/home/ana/Pictures/dunes.jpg");

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

TEST(TagManagerPathHash, IsTheSha256OfTheUtf8PathInLowerCaseHex)
{
    const std::pair<const char *, const char *> cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"/home/ana/Pictures/beach.jpg", "74e932ca78c56b3cbb29ebcdc0d10b3237b4bdd15d7192149fcfc44dd167a792"},
        {"/home/ana/Pictures/Beach.jpg", "2ba17e16041c2cf670713dd0bbf089d08fd84beac502224b6d19c65ace2cee35"},
        {"/home/zoë/Füße/日本.jpg", "1af8282be54b662a182d2e0abeaaa8f069eaf5b8ecf47d282f419fa1ac15bb74"},
    };
    for (const auto &[path, hash] : cases)
        EXPECT_EQ(TagManager::pathHash(QString::fromUtf8(path)), QString::fromLatin1(hash)) << path;
}

TEST_F(TagManagerTest, NewTagsAreStampedStoredAndReadBack)
{
    TagManager tags(m_preferences, m_time);
    EXPECT_TRUE(tags.tags().isEmpty());
    EXPECT_TRUE(tags.imageTags().isEmpty());

    int changes = 0;
    QObject::connect(&tags, &TagManager::tagsChanged, [&] { ++changes; });
    const Tag family = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), false);
    m_time.advance(60);
    const Tag holiday = tags.createTag(QStringLiteral("Holiday"), QStringLiteral("#34C759"), true);

    EXPECT_EQ(changes, 2);
    EXPECT_FALSE(family.id.isNull());
    EXPECT_NE(family.id, holiday.id);
    EXPECT_EQ(family.name, QStringLiteral("Family"));
    EXPECT_EQ(family.color, QStringLiteral("#FF9500"));
    EXPECT_FALSE(family.isPinned);
    EXPECT_TRUE(holiday.isPinned);
    EXPECT_EQ(family.createdAt, QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC));
    EXPECT_EQ(family.updatedAt, family.createdAt);
    EXPECT_EQ(holiday.createdAt, family.createdAt.addSecs(60));
    EXPECT_EQ(tags.tags(), (QList<Tag> {holiday, family}));

    const TagManager reloaded(m_preferences, m_time);
    EXPECT_EQ(reloaded.tags(), tags.tags());
}

TEST_F(TagManagerTest, StoredRecordsUseTheFieldNames)
{
    TagManager tags(m_preferences, m_time);
    const Tag tag = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), true);
    ASSERT_TRUE(tags.assignTag(beach, tag.id));

    const QJsonArray storedTags = m_preferences.arrayValue(QStringLiteral("com.vindra.tags")).value_or(QJsonArray {});
    ASSERT_EQ(storedTags.size(), 1);
    const QJsonObject t = storedTags.first().toObject();
    EXPECT_EQ(QUuid::fromString(t.value("id").toString()), tag.id);
    EXPECT_EQ(t.value("name"), QJsonValue("Family"));
    EXPECT_EQ(t.value("color"), QJsonValue("#FF9500"));
    EXPECT_EQ(t.value("isPinned"), QJsonValue(true));
    EXPECT_EQ(t.value("createdAt"), QJsonValue("2026-01-01T12:00:00.000Z"));
    EXPECT_EQ(t.value("updatedAt"), QJsonValue("2026-01-01T12:00:00.000Z"));

    const QJsonArray stored = m_preferences.arrayValue(QStringLiteral("com.vindra.imageTags")).value_or(QJsonArray {});
    ASSERT_EQ(stored.size(), 1);
    const QJsonObject a = stored.first().toObject();
    EXPECT_EQ(a.value("imagePathHash"), QJsonValue("74e932ca78c56b3cbb29ebcdc0d10b3237b4bdd15d7192149fcfc44dd167a792"));
    EXPECT_EQ(a.value("imagePath"), QJsonValue(beach));
    EXPECT_EQ(QUuid::fromString(a.value("tagId").toString()), tag.id);
}

TEST_F(TagManagerTest, AnImageCarriesATagOnce)
{
    TagManager tags(m_preferences, m_time);
    const Tag family = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), false);
    int changes = 0;
    QObject::connect(&tags, &TagManager::imageTagsChanged, [&] { ++changes; });

    EXPECT_TRUE(tags.assignTag(beach, family.id));
    EXPECT_FALSE(tags.assignTag(beach, family.id));
    EXPECT_EQ(tags.imageTags().size(), 1);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(TagManager(m_preferences, m_time).imageTags().size(), 1);
    EXPECT_EQ(tags.tagsForImage(beach), QList<Tag> {family});
}

TEST_F(TagManagerTest, PathsDifferingInAnyWayAreDifferentImages)
{
    TagManager tags(m_preferences, m_time);
    const Tag family = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), false);
    const Tag sea = tags.createTag(QStringLiteral("Sea"), QStringLiteral("#007AFF"), false);
    ASSERT_TRUE(tags.assignTag(beach, family.id));
    ASSERT_TRUE(tags.assignTag(beachCapital, sea.id));

    EXPECT_EQ(tags.tagsForImage(beach), QList<Tag> {family});
    EXPECT_EQ(tags.tagsForImage(beachCapital), QList<Tag> {sea});
    for (const QString &other : {dunes, beach + QLatin1Char(' '), QStringLiteral("/home/ana/Pictures//beach.jpg"),
             QStringLiteral("home/ana/Pictures/beach.jpg")})
        EXPECT_TRUE(tags.tagsForImage(other).isEmpty()) << other.toStdString();
}

TEST_F(TagManagerTest, AnImagesTagsComeInTheOrderTheyWerePutOn)
{
    TagManager tags(m_preferences, m_time);
    const Tag a = tags.createTag(QStringLiteral("A"), QString(), false);
    const Tag b = tags.createTag(QStringLiteral("B"), QString(), false);
    const Tag c = tags.createTag(QStringLiteral("C"), QString(), false);
    ASSERT_TRUE(tags.assignTag(beach, c.id));
    ASSERT_TRUE(tags.assignTag(dunes, b.id));
    ASSERT_TRUE(tags.assignTag(beach, a.id));
    EXPECT_EQ(namesOf(tags.tagsForImage(beach)), (QStringList {"C", "A"}));
    EXPECT_EQ(namesOf(tags.tagsForImage(dunes)), QStringList {"B"});

    EXPECT_FALSE(tags.assignTag(beach, QUuid::createUuid())) << "no tag has that id";
    EXPECT_TRUE(tags.unassignTag(beach, c.id));
    EXPECT_FALSE(tags.unassignTag(beach, c.id));
    EXPECT_EQ(namesOf(tags.tagsForImage(beach)), QStringList {"A"});
    EXPECT_EQ(namesOf(TagManager(m_preferences, m_time).tagsForImage(beach)), QStringList {"A"});
}

TEST_F(TagManagerTest, PinnedTagsComeFirstThenByName)
{
    TagManager tags(m_preferences, m_time);
    const Tag zoo = tags.createTag(QStringLiteral("zoo"), QString(), false);
    tags.createTag(QStringLiteral("Beach"), QString(), false);
    const Tag work = tags.createTag(QStringLiteral("Work"), QString(), true);
    tags.createTag(QStringLiteral("alps"), QString(), false);
    EXPECT_EQ(namesOf(tags.tags()), (QStringList {"Work", "alps", "Beach", "zoo"}));

    m_time.advance(5);
    ASSERT_TRUE(tags.setTagPinned(zoo.id, true));
    EXPECT_EQ(namesOf(tags.tags()), (QStringList {"Work", "zoo", "alps", "Beach"}));
    ASSERT_TRUE(tags.renameTag(work.id, QStringLiteral("Archive")));
    EXPECT_EQ(namesOf(tags.tags()), (QStringList {"Archive", "zoo", "alps", "Beach"}));
    EXPECT_EQ(namesOf(TagManager(m_preferences, m_time).tags()), namesOf(tags.tags()));

    const Tag pinned = tags.tags().at(1);
    EXPECT_EQ(pinned.id, zoo.id);
    EXPECT_EQ(pinned.createdAt, zoo.createdAt);
    EXPECT_EQ(pinned.updatedAt, zoo.createdAt.addSecs(5));
}

TEST_F(TagManagerTest, EditingAnUnknownTagChangesNothing)
{
    TagManager tags(m_preferences, m_time);
    const Tag family = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), false);
    const QUuid unknown = QUuid::createUuid();
    EXPECT_FALSE(tags.renameTag(unknown, QStringLiteral("X")));
    EXPECT_FALSE(tags.setTagColor(unknown, QStringLiteral("#000000")));
    EXPECT_FALSE(tags.setTagPinned(unknown, true));
    EXPECT_FALSE(tags.deleteTag(unknown));
    EXPECT_EQ(tags.tags(), QList<Tag> {family});

    ASSERT_TRUE(tags.setTagColor(family.id, QStringLiteral("#000000")));
    EXPECT_EQ(TagManager(m_preferences, m_time).tags().first().color, QStringLiteral("#000000"));
}

TEST_F(TagManagerTest, DeletingATagTakesItOffEveryImage)
{
    TagManager tags(m_preferences, m_time);
    const Tag family = tags.createTag(QStringLiteral("Family"), QString(), false);
    const Tag sea = tags.createTag(QStringLiteral("Sea"), QString(), false);
    ASSERT_TRUE(tags.assignTag(beach, family.id));
    ASSERT_TRUE(tags.assignTag(beach, sea.id));
    ASSERT_TRUE(tags.assignTag(dunes, family.id));

    EXPECT_TRUE(tags.deleteTag(family.id));
    EXPECT_EQ(tags.tags(), QList<Tag> {sea});
    EXPECT_EQ(tags.tagsForImage(beach), QList<Tag> {sea});
    EXPECT_TRUE(tags.tagsForImage(dunes).isEmpty());
    const TagManager reloaded(m_preferences, m_time);
    EXPECT_EQ(reloaded.tags(), QList<Tag> {sea});
    EXPECT_EQ(reloaded.imageTags().size(), 1);
}

// What another version or a damaged file may leave under a key.
std::vector<std::pair<const char *, PreferenceValue>> unreadableValues()
{
    const QJsonObject goodAssignment {
        {"imagePathHash", "74e932ca78c56b3cbb29ebcdc0d10b3237b4bdd15d7192149fcfc44dd167a792"},
        {"imagePath", "/home/ana/Pictures/beach.jpg"}, {"tagId", "0b8e8f4e-6f55-4a4c-9f3e-0d6a1c2f4b11"}};
    QJsonObject badId = goodAssignment;
    badId.insert("tagId", "not-a-uuid");
    QJsonObject missingPath = goodAssignment;
    missingPath.remove("imagePath");
    return {
        {"text", QStringLiteral("[]")},
        {"number", qint64(3)},
        {"object instead of array", goodAssignment},
        {"one bad id among good", QJsonArray {goodAssignment, badId}},
        {"a missing field", QJsonArray {missingPath}},
        {"not an object", QJsonArray {goodAssignment, 7}},
    };
}

TEST_F(TagManagerTest, UnreadableAssignmentsLoadAsNoneAndAreReplacedByTheNextSave)
{
    for (const auto &[what, value] : unreadableValues()) {
        InMemoryPreferences preferences;
        TagManager writer(preferences, m_time);
        const Tag family = writer.createTag(QStringLiteral("Family"), QString(), false);
        ASSERT_EQ(preferences.setValue(QStringLiteral("com.vindra.imageTags"), value), std::nullopt);

        TagManager tags(preferences, m_time);
        EXPECT_TRUE(tags.imageTags().isEmpty()) << what;
        EXPECT_EQ(tags.tags(), QList<Tag> {family}) << what;
        EXPECT_EQ(preferences.value(QStringLiteral("com.vindra.imageTags")), value) << what;

        ASSERT_TRUE(tags.assignTag(dunes, family.id)) << what;
        const TagManager reloaded(preferences, m_time);
        ASSERT_EQ(reloaded.imageTags().size(), 1) << what;
        EXPECT_EQ(reloaded.imageTags().first().imagePath, dunes) << what;
    }
}

TEST_F(TagManagerTest, UnreadableTagsLoadAsNone)
{
    for (const auto &[what, value] : unreadableValues()) {
        InMemoryPreferences preferences;
        ASSERT_EQ(preferences.setValue(QStringLiteral("com.vindra.tags"), value), std::nullopt);
        TagManager tags(preferences, m_time);
        EXPECT_TRUE(tags.tags().isEmpty()) << what;
        tags.createTag(QStringLiteral("Fresh"), QString(), false);
        EXPECT_EQ(namesOf(TagManager(preferences, m_time).tags()), QStringList {"Fresh"}) << what;
    }
}

TEST_F(TagManagerTest, AssignmentsToTagsThatAreGoneAreLeftOut)
{
    TagManager writer(m_preferences, m_time);
    const Tag family = writer.createTag(QStringLiteral("Family"), QString(), false);
    const ImageTag stale {TagManager::pathHash(beach), beach, QUuid::createUuid()};
    const ImageTag live {TagManager::pathHash(beach), beach, family.id};
    ASSERT_EQ(
        m_preferences.setValue(QStringLiteral("com.vindra.imageTags"), QJsonArray {stale.toJson(), live.toJson()}),
        std::nullopt);
    const TagManager tags(m_preferences, m_time);
    EXPECT_EQ(tags.imageTags().size(), 2);
    EXPECT_EQ(tags.tagsForImage(beach), QList<Tag> {family});
}

TEST_F(TagManagerTest, TagsOutliveTheRunInThePreferencesFile)
{
    QTemporaryDir folder;
    QUuid id;
    {
        PreferenceStore preferences(folder.path());
        TagManager tags(preferences, m_time);
        id = tags.createTag(QStringLiteral("Family"), QStringLiteral("#FF9500"), true).id;
        ASSERT_TRUE(tags.assignTag(beach, id));
    }
    PreferenceStore preferences(folder.path());
    const TagManager tags(preferences, m_time);
    ASSERT_EQ(tags.tags().size(), 1);
    EXPECT_EQ(tags.tags().first().id, id);
    EXPECT_EQ(tags.tags().first().createdAt, QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC));
    EXPECT_EQ(namesOf(tags.tagsForImage(beach)), QStringList {"Family"});
}

} // namespace
} // namespace sorvane
