#include "codecs/VipsDecodeSteps.h"

#include "codecs/VipsRuntime.h"

namespace sorvane {

// libvips keeps one error buffer for the whole process; its text is the best description there is.
QString VipsDecodeSteps::error(const char *fallback)
{
    QString text = QString::fromUtf8(VipsRuntime::takeError()).trimmed();
    text.replace(QLatin1Char('\n'), QLatin1String("; "));
    return text.isEmpty() ? QString::fromLatin1(fallback) : text;
}

// Header only: no pixel is decoded here.
VipsImageRef VipsDecodeSteps::openHeader(const QByteArray &path)
{
    VipsImageRef header(vips_image_new_from_file(path.constData(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr));
    if (!header || header->Xsize < 1 || header->Ysize < 1) {
        VipsRuntime::takeError();
        return {};
    }
    return header;
}

bool VipsDecodeSteps::withinPixelLimit(const VipsImage *header, qint64 limit)
{
    return qint64(header->Xsize) * header->Ysize <= limit;
}

// Whether pixels must go through the file's ICC profile to become sRGB. A
// profile that lcms cannot read or that does not fit the pixels (an RGB profile
// on a grey image) would fail the decode, so such an image is taken as sRGB.
// CMYK is left out: libvips' CMYK to sRGB conversion already uses the embedded
// profile, and exporting again would apply it to pixels that are no longer CMYK.
bool VipsDecodeSteps::needsProfileTransform(VipsImage *header)
{
    if (header->Type == VIPS_INTERPRETATION_CMYK || !vips_icc_present()
        || !vips_image_get_typeof(header, VIPS_META_ICC_NAME))
        return false;
    const void *profile = nullptr;
    size_t length = 0;
    const bool usable = vips_image_get_blob(header, VIPS_META_ICC_NAME, &profile, &length) == 0
        && vips_icc_is_compatible_profile(header, profile, length);
    if (!usable)
        VipsRuntime::takeError(); // lcms' complaint is not this encode's error
    return usable;
}

// The first frame, upright, shrunk (never enlarged) to fit `width` x `height`. With a
// usable ICC profile the pixels go through it to sRGB; without one they are
// taken to be sRGB already, as every viewer does.
//
// Truncation fails the decode: it would otherwise leave a grey band across the
// photo. Recoverable damage (stray bytes, a bad CRC in an ancillary chunk) does
// not, because viewers show such files and the probe has accepted them.
VipsImageRef VipsDecodeSteps::startThumbnail(const QByteArray &path, int width, int height, bool viaProfile)
{
    VipsImageRef thumb;
    const int failed = viaProfile ? vips_thumbnail(path.constData(), thumb.out(), width, "height", height, "size",
                           VIPS_SIZE_DOWN, "fail_on", VIPS_FAIL_ON_TRUNCATED, "export_profile", "srgb", nullptr)
                                  : vips_thumbnail(path.constData(), thumb.out(), width, "height", height, "size",
                                      VIPS_SIZE_DOWN, "fail_on", VIPS_FAIL_ON_TRUNCATED, nullptr);
    if (failed)
        return {};
    return thumb;
}

// Brings what the thumbnail produced (grey, 16-bit) to 8-bit sRGB. Bands beyond
// RGB and alpha are left to the savers, which drop them.
VipsImageRef VipsDecodeSteps::toSrgb(VipsImage *in)
{
    if (in->Type == VIPS_INTERPRETATION_sRGB)
        return VipsImageRef::share(in);
    VipsImageRef out;
    if (vips_colourspace(in, out.out(), VIPS_INTERPRETATION_sRGB, nullptr) != 0)
        return {};
    return out;
}

} // namespace sorvane
