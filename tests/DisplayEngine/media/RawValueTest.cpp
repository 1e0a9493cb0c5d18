#include "media/CloudProviderType.h"
#include "media/MediaType.h"
#include "media/VideoTier.h"

#include <gtest/gtest.h>

#include <QList>

namespace sorvane {
namespace {

template <typename Enum> void expectRawRoundTrip(const std::vector<std::pair<Enum, QString>> &table)
{
    for (const auto &[value, raw] : table) {
        EXPECT_EQ(toRaw(value), raw);
        EXPECT_EQ(fromRaw<Enum>(raw), value) << raw.toStdString();
    }
}

TEST(RawValues, EachCaseHasItsExactRawString)
{
    expectRawRoundTrip<MediaType>({{MediaType::image, QStringLiteral("image")},
        {MediaType::video, QStringLiteral("video")}, {MediaType::livePhoto, QStringLiteral("livePhoto")}});
    expectRawRoundTrip<VideoTier>({{VideoTier::tier1, QStringLiteral("tier1")},
        {VideoTier::tier2, QStringLiteral("tier2")}, {VideoTier::tier3, QStringLiteral("tier3")}});
    expectRawRoundTrip<CloudProviderType>({{CloudProviderType::googleDrive, QStringLiteral("google_drive")},
        {CloudProviderType::googlePhotos, QStringLiteral("google_photos")},
        {CloudProviderType::icloud, QStringLiteral("icloud_photos")},
        {CloudProviderType::dropbox, QStringLiteral("dropbox")},
        {CloudProviderType::onedrive, QStringLiteral("onedrive")}});
}

TEST(RawValues, NearMissesAreRejected)
{
    // Raw values are wire values: no case folding, no trimming, no aliases.
    for (const char *raw : {"", "Image", "livephoto", "live_photo", " video"})
        EXPECT_EQ(fromRaw<MediaType>(QString::fromUtf8(raw)), std::nullopt) << raw;
    for (const char *raw : {"", "Tier1", "tier4", "tier 1", "1"})
        EXPECT_EQ(fromRaw<VideoTier>(QString::fromUtf8(raw)), std::nullopt) << raw;
    for (const char *raw : {"icloud", "iCloud Photos", "googleDrive", "Dropbox", "one_drive", ""})
        EXPECT_EQ(fromRaw<CloudProviderType>(QString::fromUtf8(raw)), std::nullopt) << raw;
}

struct ProviderLabels {
    CloudProviderType provider;
    const char *displayName;
    QList<uint> iconCodePoints;
};

TEST(CloudProviderType, LabelsAndIconsInPickerOrder)
{
    const std::vector<ProviderLabels> expected {
        {CloudProviderType::googleDrive, "Google Drive", {0x1F310}},
        {CloudProviderType::googlePhotos, "Google Photos", {0x1F4F7}},
        {CloudProviderType::icloud, "iCloud Photos", {0x2601, 0xFE0F}},
        {CloudProviderType::dropbox, "Dropbox", {0x1F4E6}},
        {CloudProviderType::onedrive, "OneDrive", {0x1F537}},
    };
    ASSERT_EQ(allCloudProviderTypes.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const ProviderLabels &row = expected[i];
        EXPECT_EQ(allCloudProviderTypes[i], row.provider) << i;
        EXPECT_EQ(displayName(row.provider), QString::fromUtf8(row.displayName));
        EXPECT_EQ(icon(row.provider).toUcs4(), row.iconCodePoints) << row.displayName;
    }
}

} // namespace
} // namespace sorvane
