// Writes a small, complete bundle of real photos-like images (gradients painted
// with libvips) for the demo and the command-line tests: tile and full tiers,
// a branding logo and a manifest with sizes and SHA-256 of every file.

#include "bundle/BundleFormat.h"
#include "bundle/BundleManifest.h"
#include "bundle/Sha256.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <vips/vips.h>

#include <cstdio>

using namespace sorvane;

namespace {

struct Shape {
    int width;
    int height;
};

// A diagonal colour gradient: each picture gets its own hue pair.
VipsImage *paint(int width, int height, int seed, bool alpha)
{
    VipsImage *xy = nullptr;
    vips_xyz(&xy, width, height, nullptr);
    VipsImage *x = nullptr, *y = nullptr;
    vips_extract_band(xy, &x, 0, nullptr);
    vips_extract_band(xy, &y, 1, nullptr);
    const double hue = (seed * 53 % 360) / 360.0;
    double a[] = {255.0 * hue / width, 255.0 * (1 - hue) / width, 128.0 / width};
    double b[] = {255.0 * (1 - hue) / height, 200.0 * hue / height, 90.0 / height};
    VipsImage *xs = nullptr, *ys = nullptr, *sum = nullptr, *cast = nullptr;
    double zero[] = {0, 0, 0};
    vips_linear(x, &xs, a, zero, 3, nullptr);
    vips_linear(y, &ys, b, zero, 3, nullptr);
    vips_add(xs, ys, &sum, nullptr);
    vips_cast(sum, &cast, VIPS_FORMAT_UCHAR, nullptr);
    VipsImage *out = cast;
    if (alpha) {
        VipsImage *withAlpha = nullptr;
        vips_bandjoin_const1(cast, &withAlpha, 200, nullptr);
        g_object_unref(cast);
        out = withAlpha;
    }
    for (VipsImage *image : {xy, x, y, xs, ys, sum})
        g_object_unref(image);
    return out;
}

bool save(VipsImage *image, const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    const QByteArray name = QFile::encodeName(path);
    const int status = path.endsWith(QLatin1String(".png"))
        ? vips_pngsave(image, name.constData(), nullptr)
        : vips_jpegsave(image, name.constData(), "Q", 85, "strip", TRUE, nullptr);
    return status == 0;
}

BundleAsset describe(const QString &root, const QString &relative, int width, int height)
{
    const QString path = root + QLatin1Char('/') + relative;
    BundleAsset asset;
    asset.path = relative;
    asset.w = width;
    asset.h = height;
    asset.bytes = QFileInfo(path).size();
    asset.sha256 = Sha256::ofFile(path).value_or(QString());
    return asset;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2 || VIPS_INIT(argv[0]) != 0) {
        std::fprintf(stderr, "usage: sorvane-sample-bundle OUTPUT_FOLDER\n");
        return 2;
    }
    const QString root = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QDir(root).removeRecursively();

    const Shape shapes[] = {{3, 2}, {2, 3}, {1, 1}, {16, 9}, {3, 1}, {4, 5}};
    BundleManifest manifest;
    manifest.format = BundleFormat::formatName;
    manifest.formatVersion = BundleFormat::formatVersionWritten;
    manifest.minReaderVersion = BundleFormat::minReaderVersionWritten;
    manifest.bundleId = QStringLiteral("sample-bundle-0001");
    manifest.title = QStringLiteral("Sorvane sample");
    manifest.createdUtc = QStringLiteral("2026-01-01T12:00:00Z");
    manifest.createdBy
        = BundleCreatedBy {QStringLiteral("sorvane-sample-bundle"), QStringLiteral("1"), QStringLiteral("linux"), 1, 0};
    manifest.flavor = QStringLiteral("media-only");
    manifest.includeOriginals = false;
    manifest.derivatives = BundleDerivatives {
        std::vector<BundleTier> {{BundleFormat::tierTile, BundleFormat::tileLongEdge, QStringLiteral("media/tile")},
            {BundleFormat::tierFull, BundleFormat::fullLongEdge, QStringLiteral("media/full")}},
        false, true, true, 0};
    manifest.playback = BundlePlaybackJSON {};
    manifest.playback->sort = QStringLiteral("random");
    manifest.playback->shuffleSeed = 7;
    manifest.playback->intervalSeconds = 5.0;
    manifest.playback->crossfade = true;
    manifest.playback->transitionSeconds = 1.0;

    std::vector<BundleItem> items;
    qint64 assetBytes = 0;
    int assetFiles = 0;
    for (int i = 0; i < 12; ++i) {
        const Shape shape = shapes[i % 6];
        const QString id = QStringLiteral("%1").arg(0x5a3c0000 + i * 977, 8, 16, QLatin1Char('0'));
        BundleItem item;
        item.id = id;
        item.mediaType = QStringLiteral("image");
        item.sourceName = QStringLiteral("photo-%1.jpg").arg(i + 1, 2, 10, QLatin1Char('0'));
        item.sourceCreatedUtc = QStringLiteral("2025-0%1-1%2T09:30:00Z").arg(1 + i % 9).arg(i % 10);
        item.sourceModifiedUtc = item.sourceCreatedUtc;
        for (const auto &[tier, longEdge] :
            {std::pair {BundleFormat::tierTile, 400}, std::pair {BundleFormat::tierFull, 1080}}) {
            const double scale = double(longEdge) / std::max(shape.width, shape.height);
            const int w = int(shape.width * scale), h = int(shape.height * scale);
            const QString relative = QStringLiteral("media/%1/%2.jpg").arg(tier, id);
            VipsImage *image = paint(w, h, i, false);
            const bool ok = save(image, root + QLatin1Char('/') + relative);
            g_object_unref(image);
            if (!ok) {
                std::fprintf(stderr, "sorvane-sample-bundle: could not write %s: %s\n", qPrintable(relative),
                    vips_error_buffer());
                return 1;
            }
            item.assets.emplace_back(tier, describe(root, relative, w, h));
            assetBytes += *item.assets.back().second.bytes;
            ++assetFiles;
        }
        items.push_back(item);
    }
    manifest.items = items;
    manifest.itemsKeyPresent = true;

    VipsImage *logo = paint(256, 128, 99, true);
    save(logo, root + QLatin1Char('/') + BundleFormat::logoPath);
    g_object_unref(logo);
    BundleBrandingJson branding;
    branding.displayName = QStringLiteral("Sorvane");
    branding.logoAsset = BundleFormat::logoPath;
    branding.holding = true;
    branding.overlay = BundleBrandingOverlayJson {true, QStringLiteral("bottom_right"), 8.0, 0.7, 2.0, 0};
    manifest.branding = branding;
    manifest.counts = BundleCounts {qint64(items.size()), assetFiles, assetBytes, 0, 0, 0};

    QFile file(root + QLatin1Char('/') + BundleFormat::manifestFileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(manifest.toJson().serialize()) < 0) {
        std::fprintf(stderr, "sorvane-sample-bundle: could not write bundle.json\n");
        return 1;
    }
    std::printf("%s\n", qPrintable(root));
    return 0;
}
