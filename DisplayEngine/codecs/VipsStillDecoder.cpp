#include "codecs/VipsStillDecoder.h"

#include "codecs/VipsDecodeSteps.h"
#include "codecs/VipsRuntime.h"
#include "media/ForeignStillFormat.h"

#include <QFile>

namespace sorvane {

namespace {

bool isOwnLoader(VipsImage *header)
{
    const char *loader = nullptr;
    if (vips_image_get_typeof(header, VIPS_META_LOADER) == 0
        || vips_image_get_string(header, VIPS_META_LOADER, &loader) != 0 || !loader)
        return false;
    return vips_isprefix("heifload", loader) || vips_isprefix("jxlload", loader);
}

QSize uprightSize(VipsImage *header)
{
    int orientation = 1;
    if (vips_image_get_typeof(header, VIPS_META_ORIENTATION))
        vips_image_get_int(header, VIPS_META_ORIENTATION, &orientation);
    const QSize stored(header->Xsize, header->Ysize);
    return orientation >= 5 && orientation <= 8 ? stored.transposed() : stored;
}

// Four 8-bit bands: grey and RGB take an opaque alpha, extra bands go.
VipsImageRef toRgba(VipsImage *srgb)
{
    VipsImageRef image = VipsImageRef::share(srgb);
    if (image->BandFmt != VIPS_FORMAT_UCHAR) {
        VipsImageRef cast;
        if (vips_cast_uchar(image.get(), cast.out(), nullptr) != 0)
            return {};
        image = std::move(cast);
    }
    VipsImageRef out;
    const int failed = image->Bands == 3 ? vips_bandjoin_const1(image.get(), out.out(), 255.0, nullptr)
        : image->Bands > 4               ? vips_extract_band(image.get(), out.out(), 0, "n", 4, nullptr)
        : image->Bands == 4              ? (out = VipsImageRef::share(image.get()), 0)
                                         : -1;
    if (failed)
        return {};
    return out;
}

} // namespace

bool VipsStillDecoder::handles(const QString &path)
{
    if (!ForeignStillFormat::sniff(path) || !VipsRuntime::ensureStarted())
        return false;
    const VipsImageRef header = VipsDecodeSteps::openHeader(QFile::encodeName(path));
    return header && isOwnLoader(header.get());
}

VipsStill VipsStillDecoder::decode(const QString &path, const std::function<QSize(QSize upright)> &sizeFor)
{
    VipsStill still;
    const QByteArray name = QFile::encodeName(path);
    const VipsImageRef header = VipsRuntime::ensureStarted() ? VipsDecodeSteps::openHeader(name) : VipsImageRef();
    if (!header || !isOwnLoader(header.get())) {
        still.error = QStringLiteral("image could not be decoded");
        return still;
    }
    still.sourceSize = uprightSize(header.get());
    if (!VipsDecodeSteps::withinPixelLimit(header.get(), kMaxSourcePixels)) {
        still.error = QStringLiteral("image is too large to show");
        return still;
    }
    const QSize wanted = sizeFor(still.sourceSize).boundedTo(still.sourceSize);
    const VipsImageRef thumb = VipsDecodeSteps::startThumbnail(name, std::max(1, wanted.width()),
        std::max(1, wanted.height()), VipsDecodeSteps::needsProfileTransform(header.get()));
    const VipsImageRef srgb = thumb ? VipsDecodeSteps::toSrgb(thumb.get()) : VipsImageRef();
    const VipsImageRef rgba = srgb ? toRgba(srgb.get()) : VipsImageRef();
    size_t bytes = 0;
    void *pixels = rgba ? vips_image_write_to_memory(rgba.get(), &bytes) : nullptr;
    if (!pixels) {
        still.error = VipsDecodeSteps::error("image could not be decoded");
        return still;
    }
    still.rgba = QByteArray(static_cast<const char *>(pixels), qsizetype(bytes));
    g_free(pixels);
    still.size = QSize(rgba->Xsize, rgba->Ysize);
    return still;
}

} // namespace sorvane
