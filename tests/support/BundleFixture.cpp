#include "support/BundleFixture.h"

#include "bundle/Sha256.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sorvane::test {

QByteArray fillerBytes(int size, int seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 x = 2463534242u + quint32(seed) * 7919u;
    for (int i = 0; i < size; ++i) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        bytes[i] = char(x & 0xFF);
    }
    return bytes;
}

BundleFixture::BundleFixture()
{
    EXPECT_TRUE(m_dir.isValid());
    manifest.format = QStringLiteral("sorvane.bundle");
    manifest.formatVersion = 2;
    manifest.minReaderVersion = 1;
    manifest.items = std::vector<BundleItem> {};
    manifest.itemsKeyPresent = true;
}

QString BundleFixture::writeFile(const QString &relative, const QByteArray &bytes) const
{
    const QString absolute = path(relative);
    QDir().mkpath(QFileInfo(absolute).absolutePath());
    QFile file(absolute);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << qPrintable(absolute);
    file.write(bytes);
    return absolute;
}

BundleAsset BundleFixture::assetFor(const QString &relative, const QByteArray &bytes)
{
    BundleAsset asset;
    asset.path = relative;
    asset.w = 640;
    asset.h = 480;
    asset.bytes = bytes.size();
    asset.sha256 = Sha256::ofBytes(bytes);
    return asset;
}

BundleItem &BundleFixture::addItem(
    const QString &id, std::initializer_list<std::pair<QString, int>> tierSizes, const QString &mediaType)
{
    BundleItem item;
    item.id = id;
    item.mediaType = mediaType;
    int seed = int(manifest.items->size()) * 16;
    for (const auto &[tier, size] : tierSizes) {
        const QString relative = QStringLiteral("media/%1/%2.bin").arg(tier, id);
        const QByteArray bytes = fillerBytes(size, ++seed);
        writeFile(relative, bytes);
        item.assets.emplace_back(tier, assetFor(relative, bytes));
    }
    manifest.items->push_back(item);
    return manifest.items->back();
}

void BundleFixture::writeManifest() const
{
    writeManifestText(manifest.toJson().serialize());
}

void BundleFixture::writeManifestText(const QByteArray &text) const
{
    writeFile(QStringLiteral("bundle.json"), text);
}

} // namespace sorvane::test
