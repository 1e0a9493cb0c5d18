#include "codecs/VipsDerivativeEncoder.h"

#include "EngineLog.h"
#include "codecs/VipsAssetProbe.h"
#include "codecs/VipsDecodeSteps.h"
#include "codecs/VipsRuntime.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <vips/vips.h>

#include <algorithm>
#include <utility>

namespace sorvane {

namespace {

struct SavedBuffer {
    void *data = nullptr;
    size_t size = 0;
    ~SavedBuffer() { g_free(data); }
};

enum class Container { jpeg, png };

const char *extensionOf(Container container)
{
    return container == Container::png ? ".png" : ".jpg";
}

QString tooLargeText(const VipsImage *header)
{
    return QStringLiteral("not decodable: %1x%2 pixels is more than the encoder accepts")
        .arg(header->Xsize)
        .arg(header->Ysize);
}

bool isAnimationFormat(VipsImage *header)
{
    const char *loader = nullptr;
    if (vips_image_get_typeof(header, VIPS_META_LOADER) == 0
        || vips_image_get_string(header, VIPS_META_LOADER, &loader) != 0 || !loader)
        return false;
    return vips_isprefix("gifload", loader) || vips_isprefix("webpload", loader);
}

// `image` reduced to fit `longEdge`; the image itself when it already fits.
VipsImageRef fitted(VipsImage *image, int longEdge)
{
    if (std::max(image->Xsize, image->Ysize) <= longEdge)
        return VipsImageRef::share(image);
    VipsImageRef out;
    // The pixels are upright already; a stale tag must not turn them again.
    if (vips_thumbnail_image(
            image, out.out(), longEdge, "height", longEdge, "size", VIPS_SIZE_DOWN, "no_rotate", TRUE, nullptr)
        != 0)
        return {};
    return out;
}

bool saveToBuffer(VipsImage *image, Container container, SavedBuffer &buffer)
{
    // "strip" drops EXIF, XMP, IPTC and ICC alike, the orientation tag with them.
    if (container == Container::png)
        return vips_pngsave_buffer(image, &buffer.data, &buffer.size, "strip", TRUE, nullptr) == 0;
    return vips_jpegsave_buffer(image, &buffer.data, &buffer.size, "Q", VipsDerivativeEncoder::jpegQuality, "strip",
               TRUE, "optimize_coding", TRUE, "interlace", FALSE, nullptr)
        == 0;
}

// Writes beside `path` and renames, so the name never points at a partial file.
std::optional<QString> writeAtomically(const QString &path, const SavedBuffer &buffer)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return QStringLiteral("could not create the folder %1").arg(folder);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("could not write %1: %2").arg(path, file.errorString());
    const qint64 size = qint64(buffer.size);
    if (file.write(static_cast<const char *>(buffer.data), size) != size) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return QStringLiteral("could not write %1: %2").arg(path, reason);
    }
    if (!file.commit())
        return QStringLiteral("could not write %1: %2").arg(path, file.errorString());
    return std::nullopt;
}

BundleDerivativeResult failure(QString error, const std::vector<BundleDerivativeFile> &written)
{
    for (const BundleDerivativeFile &file : written)
        QFile::remove(file.path);
    BundleDerivativeResult result;
    result.error = std::move(error);
    return result;
}

BundleDerivativeResult notDecodable(const QByteArray &logName, QString error)
{
    qCWarning(lcWriter, "Derivative failed for %s: not decodable", logName.constData());
    return failure(std::move(error), {});
}

// One file per tier from `upright` (8-bit sRGB, in memory), in the tiers' order.
BundleDerivativeResult writeTiers(VipsImage *upright, Container container, const std::vector<BundleTierTarget> &tiers,
    const QString &baseName, const QByteArray &logName)
{
    BundleDerivativeResult result;
    for (const BundleTierTarget &tier : tiers) {
        const VipsImageRef sized = fitted(upright, tier.longEdge);
        if (!sized) {
            qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
            return failure(VipsDecodeSteps::error("no thumbnail"), result.files);
        }
        SavedBuffer buffer;
        if (!saveToBuffer(sized.get(), container, buffer)) {
            qCWarning(lcWriter, "Derivative write failed for %s", logName.constData());
            return failure(VipsDecodeSteps::error("could not encode the image"), result.files);
        }
        const QString path = QDir(tier.directory).filePath(baseName + QLatin1String(extensionOf(container)));
        if (const auto error = writeAtomically(path, buffer)) {
            qCWarning(lcWriter, "Derivative write failed for %s", logName.constData());
            BundleDerivativeResult failed = failure(*error, result.files);
            failed.writeFailed = true;
            return failed;
        }
        result.files.push_back({tier.name, path, qint64(buffer.size), sized->Xsize, sized->Ysize});
    }
    return result;
}

std::optional<QString> invalidTier(const std::vector<BundleTierTarget> &tiers)
{
    for (const BundleTierTarget &tier : tiers) {
        if (tier.longEdge < 1 || tier.longEdge > VIPS_MAX_COORD)
            return QStringLiteral("tier %1 has no usable long edge (%2)").arg(tier.name).arg(tier.longEdge);
    }
    return std::nullopt;
}

int largestEdge(const std::vector<BundleTierTarget> &tiers)
{
    int edge = 0;
    for (const BundleTierTarget &tier : tiers)
        edge = std::max(edge, tier.longEdge);
    return edge;
}

} // namespace

std::optional<BundleImageInfo> VipsDerivativeEncoder::inspect(const QString &source) const
{
    if (!VipsRuntime::ensureStarted())
        return std::nullopt;
    const VipsImageRef header = VipsDecodeSteps::openHeader(QFile::encodeName(source));
    if (!header || !VipsDecodeSteps::withinPixelLimit(header.get()))
        return std::nullopt;

    BundleImageInfo info;
    const bool swap = vips_image_get_orientation_swap(header.get());
    info.width = swap ? header->Ysize : header->Xsize;
    info.height = swap ? header->Xsize : header->Ysize;
    info.frames = isAnimationFormat(header.get()) ? std::max(1, vips_image_get_n_pages(header.get())) : 1;
    info.hasAlpha = vips_image_hasalpha(header.get());
    return info;
}

BundleDerivativeResult VipsDerivativeEncoder::encode(
    const QString &source, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const
{
    const QByteArray logName = source.toUtf8();
    if (const auto error = invalidTier(tiers)) {
        qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
        return failure(*error, {});
    }
    if (tiers.empty())
        return {};
    if (!VipsRuntime::ensureStarted())
        return notDecodable(logName, QStringLiteral("not decodable: libvips did not start"));

    const QByteArray path = QFile::encodeName(source);
    bool viaProfile = false;
    {
        const VipsImageRef header = VipsDecodeSteps::openHeader(path);
        if (!header)
            return notDecodable(logName, QStringLiteral("not decodable"));
        if (!VipsDecodeSteps::withinPixelLimit(header.get()))
            return notDecodable(logName, tooLargeText(header.get()));
        viaProfile = VipsDecodeSteps::needsProfileTransform(header.get());
    }

    // The one decode: the largest tier, straight from the file, kept in memory
    // (at most a few tens of megabytes) for the smaller tiers.
    VipsImageRef upright;
    if (const VipsImageRef thumb
        = VipsDecodeSteps::startThumbnail(path, largestEdge(tiers), largestEdge(tiers), viaProfile)) {
        if (const VipsImageRef srgb = VipsDecodeSteps::toSrgb(thumb.get()))
            upright = VipsImageRef(vips_image_copy_memory(srgb.get()));
    }
    if (!upright) {
        qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
        return failure(VipsDecodeSteps::error("no thumbnail"), {});
    }
    const Container container = vips_image_hasalpha(upright.get()) ? Container::png : Container::jpeg;
    return writeTiers(upright.get(), container, tiers, baseName, logName);
}

BundleDerivativeResult VipsDerivativeEncoder::encode(
    const BundleRasterImage &image, const std::vector<BundleTierTarget> &tiers, const QString &baseName) const
{
    const QByteArray logName = baseName.toUtf8();
    if (const auto error = invalidTier(tiers)) {
        qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
        return failure(*error, {});
    }
    if (!image.isValid()) {
        return notDecodable(logName,
            QStringLiteral("not decodable: %1x%2 pixels do not match %3 bytes of RGB")
                .arg(image.width)
                .arg(image.height)
                .arg(image.rgb.size()));
    }
    if (tiers.empty())
        return {};
    if (!VipsRuntime::ensureStarted())
        return notDecodable(logName, QStringLiteral("not decodable: libvips did not start"));

    VipsImageRef pixels(vips_image_new_from_memory_copy(
        image.rgb.constData(), size_t(image.rgb.size()), image.width, image.height, 3, VIPS_FORMAT_UCHAR));
    VipsImageRef srgb;
    if (!pixels || vips_copy(pixels.get(), srgb.out(), "interpretation", VIPS_INTERPRETATION_sRGB, nullptr) != 0) {
        qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
        return failure(VipsDecodeSteps::error("no thumbnail"), {});
    }
    return writeTiers(srgb.get(), Container::jpeg, tiers, baseName, logName);
}

std::optional<QString> VipsDerivativeEncoder::writePng(const QString &source, const QString &destination) const
{
    const QByteArray logName = source.toUtf8();
    const auto notDecodableText = [&](QString error) {
        qCWarning(lcWriter, "Derivative failed for %s: not decodable", logName.constData());
        return std::optional<QString>(std::move(error));
    };
    if (!VipsRuntime::ensureStarted())
        return notDecodableText(QStringLiteral("not decodable: libvips did not start"));

    const QByteArray path = QFile::encodeName(source);
    int longEdge = 0;
    bool viaProfile = false;
    {
        const VipsImageRef header = VipsDecodeSteps::openHeader(path);
        if (!header)
            return notDecodableText(QStringLiteral("not decodable"));
        if (!VipsDecodeSteps::withinPixelLimit(header.get()))
            return notDecodableText(tooLargeText(header.get()));
        longEdge = std::max(header->Xsize, header->Ysize);
        viaProfile = VipsDecodeSteps::needsProfileTransform(header.get());
    }

    // Full size: a thumbnail to the image's own long edge is the image, upright and in sRGB.
    VipsImageRef srgb;
    if (const VipsImageRef thumb = VipsDecodeSteps::startThumbnail(path, longEdge, longEdge, viaProfile))
        srgb = VipsDecodeSteps::toSrgb(thumb.get());
    SavedBuffer buffer;
    if (!srgb || !saveToBuffer(srgb.get(), Container::png, buffer)) {
        // Pixels are decoded while the PNG is made, so this is where a damaged file shows.
        qCWarning(lcWriter, "Derivative failed for %s: no thumbnail", logName.constData());
        return VipsDecodeSteps::error("no thumbnail");
    }
    if (auto error = writeAtomically(destination, buffer)) {
        qCWarning(lcWriter, "Derivative write failed for %s", logName.constData());
        return error;
    }
    return std::nullopt;
}

} // namespace sorvane
