#include "media/ImageItem.h"

#include <gtest/gtest.h>

#include <QSet>

namespace sorvane {
namespace {

TEST(ImageItem, PlainLocalFileDefaults)
{
    const QUrl url = QUrl::fromLocalFile(QStringLiteral("/photos/beach.jpg"));
    const ImageItem item(url);
    EXPECT_FALSE(item.id().isNull());
    EXPECT_EQ(item.url(), url);
    EXPECT_TRUE(item.relativePath().isEmpty());
    EXPECT_EQ(item.originalIndex(), 0);
    EXPECT_FALSE(item.isAnimated());
    EXPECT_EQ(item.animationType(), AnimationType::none);
    EXPECT_EQ(item.cloudSource(), std::nullopt);
    EXPECT_EQ(item.metadata(), std::nullopt);
    EXPECT_EQ(item.mediaType(), MediaType::image);
    EXPECT_EQ(item.videoTier(), std::nullopt);
    EXPECT_FALSE(item.isCloudOnlyVideo());
    EXPECT_FALSE(item.isCloudItem());
}

TEST(ImageItem, DisplayName)
{
    struct Case {
        QUrl url;
        std::optional<QString> metadataName;
        QString expected;
    };
    const Case cases[] = {
        {QUrl::fromLocalFile(QStringLiteral("/photos/beach.jpg")), std::nullopt, QStringLiteral("beach.jpg")},
        // Decoded, not percent-encoded.
        {QUrl::fromLocalFile(QStringLiteral("/photos/Été 50%.jpg")), std::nullopt, QStringLiteral("Été 50%.jpg")},
        {QUrl::fromLocalFile(QStringLiteral("/photos/beach.jpg")), QStringLiteral("x"), QStringLiteral("x")},
        // Metadata wins even when its name is empty.
        {QUrl::fromLocalFile(QStringLiteral("/photos/beach.jpg")), QString(), QString()},
    };
    for (const Case &c : cases) {
        ImageItem item(c.url);
        if (c.metadataName) {
            ImageMetadata metadata;
            metadata.name = *c.metadataName;
            item.setMetadata(metadata);
        }
        EXPECT_EQ(item.displayName(), c.expected) << c.url.toString().toStdString();
    }
}

TEST(ImageItem, IdentityIsTheIdNotTheUrl)
{
    const QUrl url = QUrl::fromLocalFile(QStringLiteral("/photos/beach.jpg"));
    const ImageItem first(url);
    const ImageItem second(url);
    EXPECT_NE(first.id(), second.id());
    EXPECT_NE(first, second);

    ImageItem edited = first;
    edited.setOriginalIndex(9);
    edited.setMediaType(MediaType::livePhoto);
    EXPECT_EQ(edited, first);

    const QSet<ImageItem> set {first, second, edited};
    EXPECT_EQ(set.size(), 2);
}

} // namespace
} // namespace sorvane
