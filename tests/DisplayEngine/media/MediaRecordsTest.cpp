#include "media/CloudProviderType.h"
#include "media/CloudSource.h"
#include "media/ImageItem.h"
#include "media/ImageMetadata.h"
#include "media/StorageFolder.h"
#include "media/VideoExtensions.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <ctime>
#include <tuple>

namespace sorvane {
namespace {

// Records are written as JSON text so that they read like the files and responses they stand for.
QJsonObject parseObject(const char *json)
{
    return QJsonDocument::fromJson(QByteArray(json)).object();
}

template <typename Record> void expectSameTextBack(const char *json)
{
    QString error;
    const auto decoded = Record::fromJson(parseObject(json), &error);
    ASSERT_TRUE(decoded) << json << ": " << error.toStdString();
    EXPECT_EQ(decoded->toJson(), parseObject(json)) << json;
    EXPECT_EQ(Record::fromJson(decoded->toJson()), decoded) << json;
}

template <typename Record> void expectRefusalNaming(const char *json, const char *key)
{
    QString error;
    EXPECT_FALSE(Record::fromJson(parseObject(json), &error).has_value()) << json;
    EXPECT_TRUE(error.contains(QString::fromUtf8(key))) << json << ": " << error.toStdString();
}

TEST(MediaRecords, KeysAndOptionalsTravelUnchangedThroughText)
{
    // Every key once, then only the required ones: absent optionals are not written, present
    // but empty ones are, and dates come back as UTC with milliseconds.
    expectSameTextBack<CloudSource>(R"({"provider":"icloud_photos","accountId":"a","imageId":"i",
        "thumbnailURL":"https://example.com/t.jpg","cachedThumbnailPath":""})");
    expectSameTextBack<StorageFolder>(R"({"id":"f","provider":"dropbox","path":"/P/H","name":"H","parentPath":"/P",
        "imageCount":0,"lastModified":"2024-01-02T03:04:05.006Z","etag":"\"abc\""})");
    expectSameTextBack<ImageMetadata>(R"({"id":"1","name":"a.png","tags":[]})");
    expectSameTextBack<ImageMetadata>(R"({"id":"file-1","name":"Strand.jpg","size":5000000000,
        "mimeType":"image/jpeg","createdDate":"2023-07-14T08:15:30.250Z","modifiedDate":"2023-07-15T09:00:00.000Z",
        "width":6000,"height":4000,"thumbnailLink":"t","webViewLink":"w","downloadUrl":"d","cameraMake":"Fujifilm",
        "cameraModel":"X-T5","fNumber":2.8,"exposureTime":"1/250","iso":160,"focalLength":23.5,
        "dateTaken":"2023-07-14T08:15:29.999Z","tags":["beach","summer"],
        "location":{"latitude":-33.8568,"longitude":151.2153}})");
}

TEST(MediaRecords, MissingOrMistypedKeysAreRefusedByName)
{
    expectRefusalNaming<CloudSource>(R"({"accountId":"a","imageId":"i"})", "\"provider\"");
    expectRefusalNaming<CloudSource>(R"({"provider":"icloud","accountId":"a","imageId":"i"})", "icloud");
    expectRefusalNaming<CloudSource>(R"({"provider":"dropbox","accountId":"a","imageId":7})", "\"imageId\"");
    expectRefusalNaming<CloudSource>(
        R"({"provider":"dropbox","accountId":"a","imageId":"i","thumbnailURL":1})", "\"thumbnailURL\"");
    expectRefusalNaming<StorageFolder>(
        R"({"id":"1","provider":"dropbox","path":"/","name":"r","imageCount":"3"})", "\"imageCount\"");
    expectRefusalNaming<StorageFolder>(
        R"({"id":"1","provider":"dropbox","path":"/","name":"r","lastModified":"soon"})", "\"lastModified\"");
    const std::pair<const char *, const char *> metadata[] = {
        {R"({"name":"a","tags":[]})", "\"id\""},
        {R"({"id":"1","name":"a"})", "\"tags\""},
        {R"({"id":null,"name":"a","tags":[]})", "\"id\""},
        {R"({"id":"1","name":"a","tags":[],"location":{"latitude":1}})", "\"longitude\""},
        {R"({"id":"1","name":"a","tags":["x",2]})", "\"tags\""},
        {R"({"id":"1","name":"a","tags":[],"size":"12"})", "\"size\""},
        {R"({"id":"1","name":"a","tags":[],"size":1.5})", "\"size\""},
        {R"({"id":"1","name":"a","tags":[],"width":3000000000})", "\"width\""},
        {R"({"id":"1","name":"a","tags":[],"fNumber":"2.8"})", "\"fNumber\""},
        {R"({"id":"1","name":"a","tags":[],"location":[1,2]})", "\"location\""},
    };
    for (const auto &[json, key] : metadata)
        expectRefusalNaming<ImageMetadata>(json, key);
}

TEST(MediaRecords, DatesAreReadWithOrWithoutMillisecondsAndAnyOffset)
{
    // Far from UTC, so that a date wrongly read as local time shows on any machine.
    qputenv("TZ", "Asia/Tokyo");
    tzset();
    const std::pair<const char *, const char *> cases[] = {
        {"2024-02-29T23:59:59Z", "2024-02-29T23:59:59.000Z"}, {"2024-02-29T23:59:59.5Z", "2024-02-29T23:59:59.500Z"},
        {"2024-03-01T01:59:59.123+02:00", "2024-02-29T23:59:59.123Z"},
        {"2024-02-29T23:59:59", "2024-02-29T23:59:59.000Z"}, // no zone: UTC
    };
    for (const auto &[text, expected] : cases) {
        QJsonObject json = parseObject(R"({"id":"1","name":"a","tags":[]})");
        json.insert(QLatin1StringView("dateTaken"), QString::fromUtf8(text));
        const auto decoded = ImageMetadata::fromJson(json);
        ASSERT_TRUE(decoded && decoded->dateTaken) << text;
        EXPECT_EQ(decoded->dateTaken->timeSpec(), Qt::UTC) << text;
        EXPECT_EQ(decoded->dateTaken->toString(Qt::ISODateWithMs), QString::fromUtf8(expected)) << text;
    }
    qunsetenv("TZ");
    tzset();
}

TEST(MediaRecords, RawValuesAreExactWireStringsAndProvidersHaveTheirLabels)
{
    EXPECT_EQ(fromRaw<MediaType>(QStringLiteral("livePhoto")), MediaType::livePhoto);
    EXPECT_EQ(toRaw(CloudProviderType::icloud), QStringLiteral("icloud_photos"));
    EXPECT_EQ(fromRaw<CloudProviderType>(QStringLiteral("google_drive")), CloudProviderType::googleDrive);
    // No case folding, no trimming, no aliases.
    for (const char *raw : {"", "Tier1", "tier4", "tier 1", "1"})
        EXPECT_EQ(fromRaw<VideoTier>(QString::fromUtf8(raw)), std::nullopt) << raw;
    // The picker lists the providers in this order, with these labels and icons.
    const std::tuple<CloudProviderType, const char *, QList<uint>> picker[]
        = {{CloudProviderType::googleDrive, "Google Drive", {0x1F310}},
            {CloudProviderType::googlePhotos, "Google Photos", {0x1F4F7}},
            {CloudProviderType::icloud, "iCloud Photos", {0x2601, 0xFE0F}},
            {CloudProviderType::dropbox, "Dropbox", {0x1F4E6}}, {CloudProviderType::onedrive, "OneDrive", {0x1F537}}};
    ASSERT_EQ(allCloudProviderTypes.size(), std::size(picker));
    for (size_t i = 0; i < std::size(picker); ++i) {
        const auto &[provider, label, iconCodePoints] = picker[i];
        EXPECT_EQ(allCloudProviderTypes[i], provider) << label;
        EXPECT_EQ(displayName(provider), QString::fromUtf8(label));
        EXPECT_EQ(icon(provider).toUcs4(), iconCodePoints) << label;
        EXPECT_EQ(fromRaw<CloudProviderType>(toRaw(provider)), provider) << label;
    }
}

TEST(MediaRecords, VideoTiersFoldCaseAndRankByTier)
{
    const std::pair<const char *, std::optional<VideoTier>> cases[] = {{"Mov", VideoTier::tier1},
        {"3GPP", VideoTier::tier2}, {"RMVB", VideoTier::tier3}, {"jpg", std::nullopt}, {".mp4", std::nullopt}};
    for (const auto &[extension, tier] : cases)
        EXPECT_EQ(VideoExtensions::tierFor(QString::fromUtf8(extension)), tier) << extension;
    const QStringList &all = VideoExtensions::allExtensions();
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), 14);
}

TEST(MediaRecords, ItemsAreIdentifiedByIdAndNamedByMetadataFirst)
{
    const QUrl url = QUrl::fromLocalFile(QStringLiteral("/photos/Été 50%.jpg"));
    ImageItem item(url);
    EXPECT_EQ(item.displayName(), QStringLiteral("Été 50%.jpg")); // decoded, not percent-encoded
    const ImageItem sameFile(url);
    ImageItem edited = item;
    edited.setOriginalIndex(9);
    edited.setMediaType(MediaType::livePhoto);
    EXPECT_EQ(edited, item);
    EXPECT_NE(sameFile, item);
    EXPECT_EQ((QSet<ImageItem> {item, sameFile, edited}.size()), 2);
    // Metadata wins even when its name is empty.
    item.setMetadata(ImageMetadata {.id = QStringLiteral("1"), .name = QString()});
    EXPECT_EQ(item.displayName(), QString());
    // Copies share the online details: changing them on one item leaves its copies as they were,
    // and setting one detail keeps the other.
    const ImageItem local = sameFile;
    ImageItem online = sameFile;
    online.setCloudSource(CloudSource {.accountId = QStringLiteral("a"), .imageId = QStringLiteral("i")});
    online.setMetadata(ImageMetadata {.id = QStringLiteral("2"), .name = QStringLiteral("Online")});
    const ImageItem copy = online;
    online.setCloudSource(std::nullopt);
    EXPECT_EQ(std::tuple(online.isCloudItem(), online.displayName()), std::tuple(false, QStringLiteral("Online")));
    EXPECT_EQ(std::tuple(copy.isCloudItem(), copy.displayName()), std::tuple(true, QStringLiteral("Online")));
    EXPECT_EQ(std::tuple(local.isCloudItem(), local.metadata().has_value()), std::tuple(false, false));

    StorageFolder folder = *StorageFolder::fromJson(parseObject(R"({"id":"1","provider":"p","path":"/","name":"r"})"));
    StorageFolder changed = folder;
    changed.etag = QStringLiteral("v2");
    EXPECT_EQ((QSet<StorageFolder> {folder, folder, changed}.size()), 2);
}

} // namespace
} // namespace sorvane
