#include "media/ImageMetadata.h"

#include "JsonTestHelpers.h"

#include <gtest/gtest.h>

#include <QTimeZone>

#include <ctime>

namespace sorvane {
namespace {

using test::DecodeFailure;
using test::parseObject;

ImageMetadata everyField()
{
    const auto date = [](const char *iso) { return QDateTime::fromString(QString::fromUtf8(iso), Qt::ISODateWithMs); };
    ImageMetadata m;
    m.id = QStringLiteral("file-1");
    m.name = QStringLiteral("Strand.jpg");
    m.size = 5'000'000'000LL; // beyond 32 bits
    m.mimeType = QStringLiteral("image/jpeg");
    m.createdDate = date("2023-07-14T08:15:30.250Z");
    m.modifiedDate = date("2023-07-15T09:00:00Z");
    m.width = 6000;
    m.height = 4000;
    m.thumbnailLink = QStringLiteral("https://example.com/thumb");
    m.webViewLink = QStringLiteral("https://example.com/view");
    m.downloadUrl = QStringLiteral("https://example.com/download");
    m.cameraMake = QStringLiteral("Fujifilm");
    m.cameraModel = QStringLiteral("X-T5");
    m.fNumber = 2.8;
    m.exposureTime = QStringLiteral("1/250");
    m.iso = 160;
    m.focalLength = 23.5;
    m.dateTaken = date("2023-07-14T08:15:29.999Z");
    m.tags = {QStringLiteral("beach"), QStringLiteral("summer")};
    m.location = ImageMetadata::Location {-33.8568, 151.2153};
    return m;
}

TEST(ImageMetadata, EveryFieldSurvivesARoundTripThroughText)
{
    const ImageMetadata original = everyField();
    QString error;
    const auto decoded = ImageMetadata::fromJson(test::throughText(original.toJson()), &error);
    ASSERT_TRUE(decoded) << error.toStdString();
    EXPECT_EQ(*decoded, original);
}

TEST(ImageMetadata, WritesCamelCaseKeysAndUtcDates)
{
    ImageMetadata m = everyField();
    m.createdDate = QDateTime(QDate(2023, 7, 14), QTime(10, 15, 30, 250), QTimeZone(7200));
    const QJsonObject json = m.toJson();
    EXPECT_EQ(json.keys(),
        (QStringList {"cameraMake", "cameraModel", "createdDate", "dateTaken", "downloadUrl", "exposureTime", "fNumber",
            "focalLength", "height", "id", "iso", "location", "mimeType", "modifiedDate", "name", "size", "tags",
            "thumbnailLink", "webViewLink", "width"}));
    EXPECT_EQ(json.value(QLatin1StringView("createdDate")).toString(), QStringLiteral("2023-07-14T08:15:30.250Z"));
    EXPECT_EQ(json.value(QLatin1StringView("location")).toObject(),
        parseObject(R"({"latitude":-33.8568,"longitude":151.2153})"));
}

TEST(ImageMetadata, MinimalRecordHasEveryOptionalAbsentAndWritesNoMore)
{
    const char *minimal = R"({"id":"1","name":"a.png","tags":[]})";
    const auto decoded = ImageMetadata::fromJson(parseObject(minimal));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, (ImageMetadata {.id = QStringLiteral("1"), .name = QStringLiteral("a.png")}));
    EXPECT_EQ(decoded->toJson(), parseObject(minimal));
}

TEST(ImageMetadata, DatesAreReadWithOrWithoutMillisecondsAndAnyOffset)
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

class ImageMetadataDecodeFailure : public testing::TestWithParam<DecodeFailure> { };

TEST_P(ImageMetadataDecodeFailure, FailsNamingTheKey)
{
    QString error;
    EXPECT_FALSE(ImageMetadata::fromJson(parseObject(GetParam().json), &error).has_value());
    EXPECT_TRUE(error.contains(QString::fromUtf8(GetParam().keyInError))) << error.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Records, ImageMetadataDecodeFailure,
    testing::Values(
        // Missing required keys, also inside a present location.
        DecodeFailure {R"({"name":"a","tags":[]})", "\"id\""}, DecodeFailure {R"({"id":"1","tags":[]})", "\"name\""},
        DecodeFailure {R"({"id":"1","name":"a"})", "\"tags\""},
        DecodeFailure {R"({"id":null,"name":"a","tags":[]})", "\"id\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"location":{"latitude":1}})", "\"longitude\""},
        // Wrongly typed values.
        DecodeFailure {R"({"id":"1","name":"a","tags":["x",2]})", "\"tags\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"size":"12"})", "\"size\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"size":1.5})", "\"size\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"width":3000000000})", "\"width\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"fNumber":"2.8"})", "\"fNumber\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"createdDate":"yesterday"})", "\"createdDate\""},
        DecodeFailure {R"({"id":"1","name":"a","tags":[],"location":[1,2]})", "\"location\""}));

} // namespace
} // namespace sorvane
