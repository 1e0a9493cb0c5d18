#include "media/CloudSource.h"

#include "JsonTestHelpers.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::DecodeFailure;
using test::parseObject;

TEST(CloudSource, DecodesWithoutOptionalKeysAsBuiltWithoutThem)
{
    QString error;
    const auto decoded
        = CloudSource::fromJson(parseObject(R"({"provider":"dropbox","accountId":"acc","imageId":"img"})"), &error);
    ASSERT_TRUE(decoded) << error.toStdString();
    EXPECT_EQ(decoded->thumbnailURL, std::nullopt);
    EXPECT_EQ(decoded->cachedThumbnailPath, std::nullopt);
    EXPECT_EQ(*decoded,
        (CloudSource {.provider = CloudProviderType::dropbox,
            .accountId = QStringLiteral("acc"),
            .imageId = QStringLiteral("img")}));
}

TEST(CloudSource, OptionalKeysAreWrittenOnlyWhenPresent)
{
    CloudSource source {
        .provider = CloudProviderType::icloud, .accountId = QStringLiteral("acc"), .imageId = QStringLiteral("img")};
    EXPECT_EQ(source.toJson(), parseObject(R"({"provider":"icloud_photos","accountId":"acc","imageId":"img"})"));

    source.thumbnailURL = QStringLiteral("https://example.com/t.jpg");
    source.cachedThumbnailPath = QString();
    const QJsonObject json = source.toJson();
    EXPECT_EQ(json.value(QLatin1StringView("thumbnailURL")).toString(), *source.thumbnailURL);
    // Present but empty is still present.
    EXPECT_TRUE(json.value(QLatin1StringView("cachedThumbnailPath")).isString());
    EXPECT_EQ(CloudSource::fromJson(test::throughText(json)), source);
}

class CloudSourceDecodeFailure : public testing::TestWithParam<DecodeFailure> { };

TEST_P(CloudSourceDecodeFailure, FailsNamingTheKey)
{
    QString error;
    EXPECT_EQ(CloudSource::fromJson(parseObject(GetParam().json), &error), std::nullopt);
    EXPECT_TRUE(error.contains(QString::fromUtf8(GetParam().keyInError))) << error.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Records, CloudSourceDecodeFailure,
    testing::Values(DecodeFailure {R"({"accountId":"a","imageId":"i"})", "\"provider\""},
        DecodeFailure {R"({"provider":"icloud","accountId":"a","imageId":"i"})", "icloud"},
        DecodeFailure {R"({"provider":"dropbox","imageId":"i"})", "\"accountId\""},
        DecodeFailure {R"({"provider":"dropbox","accountId":"a"})", "\"imageId\""},
        DecodeFailure {R"({"provider":"dropbox","accountId":"a","imageId":7})", "\"imageId\""},
        DecodeFailure {
            R"({"provider":"dropbox","accountId":"a","imageId":"i","thumbnailURL":1})", "\"thumbnailURL\""}));

} // namespace
} // namespace sorvane
