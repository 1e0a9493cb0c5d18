#pragma once

#include "support/SampleFolder.h"
#include "support/TestFiles.h"

#include <QFile>
#include <QtEndian>

#include <vips/vips.h>

namespace sorvane::test {

// A JPEG copy of `from` with an EXIF orientation and an XMP packet, for derivatives to drop.
inline bool saveTagged(const QString &from, const QString &to, int orientation)
{
    static const char xmp[] = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"></x:xmpmeta>";
    VipsImage *loaded = vips_image_new_from_file(QFile::encodeName(from).constData(), nullptr), *copy = nullptr;
    bool ok = loaded && vips_copy(loaded, &copy, nullptr) == 0;
    if (ok) {
        vips_image_set_int(copy, VIPS_META_ORIENTATION, orientation);
        vips_image_set_blob_copy(copy, VIPS_META_XMP_NAME, xmp, sizeof xmp - 1);
        ok = vips_jpegsave(copy, QFile::encodeName(to).constData(), "Q", 95, nullptr) == 0;
    }
    for (VipsImage *image : {copy, loaded})
        if (image)
            g_object_unref(image);
    return ok;
}

// libvips will not embed a profile that does not fit the pixels, so it goes in by hand:
// one APP2 "ICC_PROFILE" segment just after the start of the image.
inline bool saveWithProfile(const QString &jpegFile, const QString &to, const QByteArray &profile)
{
    QByteArray jpeg = readAll(jpegFile);
    const QByteArray payload = QByteArray("ICC_PROFILE\0\x01\x01", 14) + profile;
    QByteArray segment("\xFF\xE2\0\0", 4);
    qToBigEndian<quint16>(quint16(payload.size() + 2), segment.data() + 2);
    return !jpeg.isEmpty() && writeAll(to, jpeg.insert(2, segment + payload));
}

inline QByteArray displayP3Profile()
{
    VipsBlob *blob = nullptr;
    if (vips_profile_load("p3", &blob, nullptr) != 0)
        return {};
    size_t length = 0;
    const void *data = vips_blob_get(blob, &length);
    const QByteArray bytes(static_cast<const char *>(data), qsizetype(length));
    vips_area_unref(VIPS_AREA(blob));
    return bytes;
}

// Every picture is a plain background with a square mark in its stored top-left corner, so
// where the mark lands tells how a derivative was turned: grey (128) under a red mark
// (220, 30, 30), or dark grey (60) under a light one (200) for the one-band pictures.
inline SampleFolder &imageSamples()
{
    const auto paint = [](const char *background, const char *mark, const char *pixels, const char *file) {
        return QStringLiteral("ffmpeg -v error -f lavfi -i color=%1:s=300x200,drawbox=w=66:h=66:c=%2:t=fill "
                              "-frames:v 1 -pix_fmt %3 %4")
            .arg(QLatin1String(background), QLatin1String(mark), QLatin1String(pixels), QLatin1String(file));
    };
    const auto tagged = [](const char *from, int orientation) -> SampleFolder::Maker {
        return [=](SampleFolder &folder, const QString &path) {
            return saveTagged(folder.path(QString::fromUtf8(from)), path, orientation);
        };
    };
    const auto profiled = [](const char *from, QByteArray (*profile)()) -> SampleFolder::Maker {
        return [=](SampleFolder &folder, const QString &path) {
            return saveWithProfile(folder.path(QString::fromUtf8(from)), path, profile());
        };
    };
    static SampleFolder folder({
        {"opaque.png", paint("0x808080", "0xDC1E1E", "rgb24", "opaque.png")},
        {"grey.png", paint("0x3C3C3C", "0xC8C8C8", "gray", "grey.png")},
        {"deep.png", "ffmpeg -v error -i opaque.png -pix_fmt rgb48be deep.png"},
        {"alpha.png", "vips bandjoin_const opaque.png alpha.png 100"},
        {"upright.jpg", {}, tagged("opaque.png", 1)},
        {"rotated-6.jpg", {}, tagged("opaque.png", 6)},
        {"thumb.png", "vips thumbnail opaque.png thumb.png 80"},
        {"small.jpg", {}, tagged("thumb.png", 1)},
        {"grey.jpg", "vips copy grey.png grey.jpg"},
        // The trip through a CMYK press profile moves the red by up to about 35.
        {"cmyk.jpg", "vips colourspace opaque.png cmyk.jpg[Q=95] cmyk"},
        // Display P3 numbers with the profile attached, as phones write them: without the
        // profile, the mark would read about (202, 54, 43).
        {"wide-gamut.jpg", "vips icc_transform opaque.png wide-gamut.jpg[Q=95] p3 --input-profile srgb"},
        {"broken-profile.jpg", {},
            profiled("upright.jpg", [] { return QByteArray("this is not an ICC profile, only bytes"); })},
        {"mismatched-profile.jpg", {}, profiled("grey.jpg", displayP3Profile)}, // an RGB profile on grey pixels
        // Only where this libvips can write HEIF.
        {"photo.heic", "vips heifsave opaque.png photo.heic --compression hevc --Q 90 || true"},
        // A second frame, all blue.
        {"first-frame.gif",
            "ffmpeg -v error -loop 1 -t 2 -r 1 -i opaque.png -vf 'drawbox=c=0x1E1EDC:t=fill:enable=gte(n\\,1),"
            "split[a][b];[a]palettegen=reserve_transparent=0[p];[b][p]paletteuse' first-frame.gif"},
        {"animated.webp", "vips copy 'first-frame.gif[n=-1]' animated.webp"},
        {"pages.tiff", "vips copy 'first-frame.gif[n=-1]' pages.tiff"},
        {"Été à Nice [2].jpg", "cp small.jpg 'Été à Nice [2].jpg'"},
        {"notes.jpg", "echo 'Shopping list: eggs, flour, a new memory card.' > notes.jpg"},
        {"Notizen für Jörg.jpg", "echo 'Geburtstag: Kuchen bestellen.' > 'Notizen für Jörg.jpg'"},
        {"empty.jpg", ": > empty.jpg"},
        // Noise compresses badly, so most of this JPEG is scan data; its headers take about 600 bytes.
        {"noise.jpg", "vips gaussnoise noise.jpg[Q=90] 320 200 --sigma 60"},
        {"cut-in-header.jpg", "head -c 300 noise.jpg > cut-in-header.jpg"},
        {"truncated.jpg", "head -c 20000 noise.jpg > truncated.jpg"},
        // Decoded, 7.5 GB.
        {"huge.png", {}, [](SampleFolder &, const QString &path) { return writeAll(path, pngClaiming(50000, 50000)); }},
    });
    return folder;
}

} // namespace sorvane::test
