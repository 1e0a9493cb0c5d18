#include "media/StorageFolder.h"

#include "JsonTestHelpers.h"

#include <gtest/gtest.h>

#include <QSet>

namespace sorvane {
namespace {

using test::parseObject;

StorageFolder holidays()
{
    StorageFolder folder;
    folder.id = QStringLiteral("f-42");
    folder.provider = QStringLiteral("google_drive");
    folder.path = QStringLiteral("/Photos/Holidays");
    folder.name = QStringLiteral("Holidays");
    return folder;
}

TEST(StorageFolder, RoundTripsWithAndWithoutOptionals)
{
    StorageFolder full = holidays();
    full.parentPath = QStringLiteral("/Photos");
    full.imageCount = 0; // known to be empty, not unknown
    full.lastModified = QDateTime::fromString(QStringLiteral("2024-01-02T03:04:05.006Z"), Qt::ISODateWithMs);
    full.etag = QStringLiteral("\"abc\"");

    for (const StorageFolder &folder : {holidays(), full}) {
        QString error;
        const auto decoded = StorageFolder::fromJson(test::throughText(folder.toJson()), &error);
        ASSERT_TRUE(decoded) << error.toStdString();
        EXPECT_EQ(*decoded, folder);
    }
    EXPECT_EQ(holidays().toJson(),
        parseObject(R"({"id":"f-42","provider":"google_drive","path":"/Photos/Holidays","name":"Holidays"})"));
}

TEST(StorageFolder, FailsOnMissingOrWronglyTypedKeys)
{
    const std::pair<const char *, const char *> cases[] = {
        {R"({"provider":"dropbox","path":"/","name":"root"})", "\"id\""},
        {R"({"id":"1","provider":"dropbox","path":"/"})", "\"name\""},
        {R"({"id":"1","provider":"dropbox","path":"/","name":"r","imageCount":"3"})", "\"imageCount\""},
        {R"({"id":"1","provider":"dropbox","path":"/","name":"r","lastModified":"soon"})", "\"lastModified\""},
    };
    for (const auto &[json, key] : cases) {
        QString error;
        EXPECT_FALSE(StorageFolder::fromJson(parseObject(json), &error).has_value()) << json;
        EXPECT_TRUE(error.contains(QString::fromUtf8(key))) << error.toStdString();
    }
}

TEST(StorageFolder, EqualFoldersCollapseInASetAndChangedOnesDoNot)
{
    StorageFolder changed = holidays();
    changed.etag = QStringLiteral("v2");
    const QSet<StorageFolder> folders {holidays(), holidays(), changed};
    EXPECT_EQ(folders.size(), 2);
}

} // namespace
} // namespace sorvane
