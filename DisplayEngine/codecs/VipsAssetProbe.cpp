#include "codecs/VipsAssetProbe.h"

#include "EngineLog.h"
#include "codecs/VipsImageRef.h"
#include "codecs/VipsRuntime.h"

#include <QFile>
#include <QFileInfo>

#include <vips/vips.h>

namespace sorvane {

namespace {

// Makes a 64-pixel thumbnail and forces every pixel of it to be computed.
bool decodesAsThumbnail(const QByteArray &path, VipsFailOn failOn)
{
    VipsImageRef thumb;
    if (vips_thumbnail(path.constData(), thumb.out(), 64, "fail_on", failOn, nullptr) != 0)
        return false;
    if (thumb->Xsize < 1 || thumb->Ysize < 1)
        return false;
    size_t size = 0;
    void *pixels = vips_image_write_to_memory(thumb.get(), &size);
    if (!pixels)
        return false;
    g_free(pixels);
    return true;
}

// Whether the file starts with the signature of a still format a bundle may carry.
// Asked before libvips sees the file name: some of its loaders scan a file for line
// ends to recognise text formats, which on a sparse terabyte of zeros never finishes.
bool hasImageSignature(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(16);
    static const QByteArray prefixes[]
        = {QByteArray("\xff\xd8\xff"), QByteArray("\x89PNG"), QByteArray("GIF8"), QByteArray("II*", 4),
            QByteArray("MM\0*", 4), QByteArray("BM"), QByteArray("\xff\x0a"), QByteArray("\0\0\0\x0cJXL ", 8)};
    for (const QByteArray &prefix : prefixes) {
        if (head.startsWith(prefix))
            return true;
    }
    // RIFF....WEBP, and ISO boxes (HEIF, AVIF) that open with "ftyp".
    return (head.startsWith("RIFF") && head.mid(8, 4) == "WEBP") || head.mid(4, 4) == "ftyp";
}

} // namespace

std::optional<BundleProbeResult> VipsAssetProbe::probe(const QString &filePath) const
{
    const QByteArray path = QFile::encodeName(filePath);
    const QByteArray name = filePath.toUtf8();
    if (!VipsRuntime::ensureStarted()) {
        qCInfo(lcEngine, "Decode probe: %s is not an image at all", name.constData());
        return std::nullopt;
    }

    if (!hasImageSignature(filePath)) {
        VipsRuntime::takeError();
        qCInfo(lcEngine, "Decode probe: %s is not an image at all", name.constData());
        return std::nullopt;
    }
    VipsImageRef header(vips_image_new_from_file(path.constData(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
    if (!header || header->Xsize < 1 || header->Ysize < 1) {
        VipsRuntime::takeError();
        // Only now is it worth asking whether any loader recognises the file at all.
        if (!vips_foreign_find_load(path.constData()))
            qCInfo(lcEngine, "Decode probe: %s is not an image at all", name.constData());
        else
            qCInfo(lcEngine, "Decode probe: %s is incomplete", name.constData());
        VipsRuntime::takeError();
        return std::nullopt;
    }
    BundleProbeResult result;
    result.width = header->Xsize;
    result.height = header->Ysize;
    result.bytes = QFileInfo(filePath).size();
    if (result.width * result.height > maxPixels) {
        qCInfo(lcEngine, "Decode probe: %s would not decode", name.constData());
        return std::nullopt;
    }

    if (decodesAsThumbnail(path, VIPS_FAIL_ON_TRUNCATED))
        return result;
    VipsRuntime::takeError();
    // It failed strictly; if it decodes leniently, the data simply stops early.
    const bool partial = decodesAsThumbnail(path, VIPS_FAIL_ON_NONE);
    VipsRuntime::takeError();
    if (partial)
        qCInfo(lcEngine, "Decode probe: %s is incomplete", name.constData());
    else
        qCInfo(lcEngine, "Decode probe: %s would not decode", name.constData());
    return std::nullopt;
}

} // namespace sorvane
