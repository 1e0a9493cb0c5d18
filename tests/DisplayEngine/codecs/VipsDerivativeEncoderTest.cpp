#include "codecs/VipsDerivativeEncoder.h"
#include "codecs/VipsRuntime.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"

#include "VipsImageRef.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSize>
#include <QTemporaryDir>
#include <QtEndian>

#include <vips/vips.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <latch>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sorvane {
namespace {

using test::ImageRef;
using test::LogCapture;
using test::peakResidentBytes;
using test::readAll;
using test::writeAll;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;
using ::testing::StartsWith;

// A line the writer logs when an encode fails.
std::string writerWarning(const QString &text)
{
    return test::logLine("sorvane.writer", "warning", text);
}

enum class Pixels { rgb, rgba, rgb16, grey, greyAlpha };
enum class Saver {
    png,
    jpeg,
    webp,
    tiff,
    gif,
    heic,
    cmykJpeg,
    wideGamutJpeg,
    brokenProfileJpeg,
    mismatchedProfileJpeg
};
enum class Corner { topLeft, topRight, bottomLeft, bottomRight };

// Every fixture is a plain background with a square mark in its stored top-left corner,
// so where the mark lands tells how the derivative was turned.
struct Palette {
    std::vector<double> background;
    std::vector<double> mark;
    VipsBandFormat format;
    VipsInterpretation interpretation;
    std::array<int, 4> shownBackground; // 8-bit sRGB and alpha
    std::array<int, 4> shownMark;
};

// Indexed by Pixels.
const Palette palettes[] = {
    {{128, 128, 128}, {220, 30, 30}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB, {128, 128, 128, 255},
        {220, 30, 30, 255}},
    {{128, 128, 128, 100}, {220, 30, 30, 255}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_sRGB, {128, 128, 128, 100},
        {220, 30, 30, 255}},
    {{128 * 257, 128 * 257, 128 * 257}, {220 * 257, 30 * 257, 30 * 257}, VIPS_FORMAT_USHORT, VIPS_INTERPRETATION_RGB16,
        {128, 128, 128, 255}, {220, 30, 30, 255}},
    {{60}, {200}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_B_W, {60, 60, 60, 255}, {200, 200, 200, 255}},
    {{60, 100}, {200, 255}, VIPS_FORMAT_UCHAR, VIPS_INTERPRETATION_B_W, {60, 60, 60, 100}, {200, 200, 200, 255}},
};

const Palette &paletteOf(Pixels pixels)
{
    return palettes[size_t(pixels)];
}

struct SourceCase {
    const char *file;
    Saver saver;
    Pixels pixels;
    QSize stored;
    int orientation; // 1: upright as stored
    const char *extension;
    int bands;
    Corner mark; // where the mark must appear
    QSize full;
    QSize tile;
    int tolerance;
    bool optional = false; // only when this libvips can write the format
};

constexpr Corner TL = Corner::topLeft;
constexpr Corner TR = Corner::topRight;
constexpr Corner BL = Corner::bottomLeft;
constexpr Corner BR = Corner::bottomRight;
const QSize landscape {300, 200};
const QSize fullLandscape {240, 160};
const QSize tileLandscape {100, 67};
const QSize fullPortrait {160, 240};
const QSize tilePortrait {67, 100};

const SourceCase sourceCases[] = {
    {"opaque.png", Saver::png, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"alpha.png", Saver::png, Pixels::rgba, landscape, 1, ".png", 4, TL, fullLandscape, tileLandscape, 8},
    {"deep.png", Saver::png, Pixels::rgb16, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"grey.png", Saver::png, Pixels::grey, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"grey-alpha.png", Saver::png, Pixels::greyAlpha, landscape, 1, ".png", 4, TL, fullLandscape, tileLandscape, 8},
    {"upright.jpg", Saver::jpeg, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"rotated-3.jpg", Saver::jpeg, Pixels::rgb, landscape, 3, ".jpg", 3, BR, fullLandscape, tileLandscape, 8},
    {"rotated-6.jpg", Saver::jpeg, Pixels::rgb, landscape, 6, ".jpg", 3, TR, fullPortrait, tilePortrait, 8},
    {"rotated-8.jpg", Saver::jpeg, Pixels::rgb, landscape, 8, ".jpg", 3, BL, fullPortrait, tilePortrait, 8},
    // Smaller than both tiers: kept at its own size.
    {"small.jpg", Saver::jpeg, Pixels::rgb, {80, 50}, 1, ".jpg", 3, TL, {80, 50}, {80, 50}, 8},
    // The trip through a CMYK press profile moves this red by up to about 35.
    {"cmyk.jpg", Saver::cmykJpeg, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 40},
    // Without the profile, the mark would read about (202, 54, 43).
    {"wide-gamut.jpg", Saver::wideGamutJpeg, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape,
        10},
    {"broken-profile.jpg", Saver::brokenProfileJpeg, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape,
        tileLandscape, 8},
    {"mismatched-profile.jpg", Saver::mismatchedProfileJpeg, Pixels::grey, landscape, 1, ".jpg", 3, TL, fullLandscape,
        tileLandscape, 8},
    // libvips reads GIFs with an alpha band; the second frame is blue.
    {"first-frame.gif", Saver::gif, Pixels::rgb, landscape, 1, ".png", 4, TL, fullLandscape, tileLandscape, 8},
    {"photo.webp", Saver::webp, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"scan.tiff", Saver::tiff, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 8},
    {"photo.heic", Saver::heic, Pixels::rgb, landscape, 1, ".jpg", 3, TL, fullLandscape, tileLandscape, 30, true},
};

bool isJpegSaver(Saver saver)
{
    return saver == Saver::jpeg || saver == Saver::cmykJpeg || saver == Saver::wideGamutJpeg
        || saver == Saver::brokenProfileJpeg || saver == Saver::mismatchedProfileJpeg;
}

ImageRef patterned(QSize size, const Palette &palette)
{
    const int bands = int(palette.background.size());
    const std::vector<double> ones(size_t(bands), 1.0);
    ImageRef black, filled, cast, copied;
    if (vips_black(black.out(), size.width(), size.height(), "bands", bands, nullptr)
        || vips_linear(black.image, filled.out(), const_cast<double *>(ones.data()),
            const_cast<double *>(palette.background.data()), bands, nullptr)
        || vips_cast(filled.image, cast.out(), palette.format, nullptr))
        return {};
    ImageRef memory(vips_image_copy_memory(cast.image));
    const int side = std::min(size.width(), size.height()) / 3;
    if (!memory.image
        || vips_draw_rect(
            memory.image, const_cast<double *>(palette.mark.data()), bands, 0, 0, side, side, "fill", TRUE, nullptr)
        || vips_copy(memory.image, copied.out(), "interpretation", palette.interpretation, nullptr))
        return {};
    return copied;
}

// `first` followed by a blue frame of the same size, as one multi-page image.
ImageRef withSecondFrame(VipsImage *first)
{
    double scale[] = {1, 1, 1};
    double blue[] = {30, 30, 220};
    ImageRef black, linear, frame, joined, paged;
    if (vips_black(black.out(), first->Xsize, first->Ysize, "bands", 3, nullptr)
        || vips_linear(black.image, linear.out(), scale, blue, 3, nullptr)
        || vips_cast_uchar(linear.image, frame.out(), nullptr)
        || vips_join(first, frame.image, joined.out(), VIPS_DIRECTION_VERTICAL, nullptr)
        || vips_copy(joined.image, paged.out(), nullptr))
        return {};
    vips_image_set_int(paged.image, VIPS_META_PAGE_HEIGHT, first->Ysize);
    return paged;
}

// libvips will not embed a profile that does not fit the pixels, so it goes in by hand:
// one APP2 "ICC_PROFILE" segment just after the start of the image.
bool saveJpegWithProfile(VipsImage *image, const QString &path, const QByteArray &profile)
{
    void *data = nullptr;
    size_t size = 0;
    if (vips_jpegsave_buffer(image, &data, &size, "Q", 95, nullptr) != 0)
        return false;
    QByteArray jpeg(static_cast<const char *>(data), qsizetype(size));
    g_free(data);
    const QByteArray payload = QByteArray("ICC_PROFILE\0\x01\x01", 14) + profile;
    QByteArray segment("\xFF\xE2\0\0", 4);
    qToBigEndian<quint16>(quint16(payload.size() + 2), segment.data() + 2);
    return writeAll(path, jpeg.insert(2, segment + payload));
}

bool saveSource(const SourceCase &c, const QString &path)
{
    ImageRef image = patterned(c.stored, paletteOf(c.pixels));
    if (!image.image)
        return false;
    const QByteArray file = QFile::encodeName(path);
    const char *name = file.constData();
    if (isJpegSaver(c.saver)) {
        // The metadata a derivative must leave behind.
        static const char xmp[] = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"></x:xmpmeta>";
        vips_image_set_int(image.image, VIPS_META_ORIENTATION, c.orientation);
        vips_image_set_blob_copy(image.image, VIPS_META_XMP_NAME, xmp, sizeof xmp - 1);
    }
    ImageRef converted;
    switch (c.saver) {
    case Saver::png:
        return vips_pngsave(image.image, name, nullptr) == 0;
    case Saver::jpeg:
        return vips_jpegsave(image.image, name, "Q", 95, nullptr) == 0;
    case Saver::webp:
        return vips_webpsave(image.image, name, "lossless", TRUE, nullptr) == 0;
    case Saver::tiff:
        return vips_tiffsave(image.image, name, nullptr) == 0;
    case Saver::gif: {
        const ImageRef frames = withSecondFrame(image.image);
        return frames.image && vips_gifsave(frames.image, name, nullptr) == 0;
    }
    case Saver::heic:
        return vips_heifsave(image.image, name, "compression", VIPS_FOREIGN_HEIF_COMPRESSION_HEVC, "Q", 90, nullptr)
            == 0;
    case Saver::cmykJpeg:
        return vips_colourspace(image.image, converted.out(), VIPS_INTERPRETATION_CMYK, nullptr) == 0
            && vips_jpegsave(converted.image, name, "Q", 95, nullptr) == 0;
    case Saver::wideGamutJpeg:
        // Display P3 numbers with the profile attached, as phones write them.
        return vips_icc_transform(image.image, converted.out(), "p3", "input_profile", "srgb", nullptr) == 0
            && vips_jpegsave(converted.image, name, "Q", 95, nullptr) == 0;
    case Saver::brokenProfileJpeg:
        return saveJpegWithProfile(image.image, path, "this is not an ICC profile, only bytes where one should be");
    case Saver::mismatchedProfileJpeg: {
        // A sound RGB profile on grey pixels.
        VipsBlob *profile = nullptr;
        if (vips_profile_load("p3", &profile, nullptr) != 0)
            return false;
        size_t length = 0;
        const void *data = vips_blob_get(profile, &length);
        const QByteArray bytes(static_cast<const char *>(data), qsizetype(length));
        vips_area_unref(VIPS_AREA(profile));
        return saveJpegWithProfile(image.image, path, bytes);
    }
    }
    return false;
}

// Noise compresses badly, so most of this JPEG's file is scan data.
bool saveNoisyJpeg(const QString &path)
{
    ImageRef noise, pixels;
    return vips_gaussnoise(noise.out(), 320, 200, "sigma", 60.0, nullptr) == 0
        && vips_cast_uchar(noise.image, pixels.out(), nullptr) == 0
        && vips_jpegsave(pixels.image, QFile::encodeName(path).constData(), "Q", 90, nullptr) == 0;
}

// Fixtures are made once for the whole program: HEIF encoding is slow.
class Fixtures {
public:
    static const Fixtures &get()
    {
        static const Fixtures instance;
        return instance;
    }
    QString path(const char *file) const { return m_dir.filePath(QString::fromUtf8(file)); }
    bool exists(const char *file) const { return QFileInfo::exists(path(file)); }

private:
    Fixtures()
    {
        if (!VipsRuntime::ensureStarted())
            return;
        for (const SourceCase &c : sourceCases) {
            if (!saveSource(c, path(c.file)))
                QFile::remove(path(c.file)); // the test reports it
            VipsRuntime::takeError();
        }
        const ImageRef pattern = patterned(landscape, paletteOf(Pixels::rgb));
        const ImageRef frames = withSecondFrame(pattern.image);
        if (frames.image) {
            vips_webpsave(frames.image, QFile::encodeName(path("animated.webp")).constData(), nullptr);
            vips_tiffsave(frames.image, QFile::encodeName(path("pages.tiff")).constData(), nullptr);
        }
        writeAll(path("notes.jpg"), "Shopping list: eggs, flour, a new memory card.\n");
        if (saveNoisyJpeg(path("noise.jpg"))) {
            const QByteArray jpeg = readAll(path("noise.jpg"));
            writeAll(path("truncated.jpg"), jpeg.left(jpeg.size() / 2));
        }
        writeAll(path("huge.png"), test::pngClaiming(50000, 50000));
    }

    QTemporaryDir m_dir;
};

std::vector<BundleTierTarget> tiersIn(const QString &root)
{
    return {{QStringLiteral("full"), 240, root + QStringLiteral("/full")},
        {QStringLiteral("tile"), 100, root + QStringLiteral("/tile")}};
}

std::vector<QString> filesUnder(const QString &root)
{
    std::vector<QString> files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.push_back(QDir(root).relativeFilePath(it.next()));
    std::sort(files.begin(), files.end());
    return files;
}

// A written derivative, decoded again.
struct Decoded {
    ImageRef image;
    std::vector<std::string> metadata; // fields that must not be there
};

Decoded decode(const QString &path)
{
    Decoded decoded;
    ImageRef loaded(vips_image_new_from_file(QFile::encodeName(path).constData(), nullptr));
    if (!loaded.image)
        return decoded;
    for (const char *field :
        {VIPS_META_EXIF_NAME, VIPS_META_XMP_NAME, VIPS_META_ICC_NAME, VIPS_META_IPTC_NAME, VIPS_META_ORIENTATION}) {
        if (vips_image_get_typeof(loaded.image, field))
            decoded.metadata.push_back(field);
    }
    decoded.image = ImageRef(vips_image_copy_memory(loaded.image));
    return decoded;
}

std::vector<int> pixelAt(VipsImage *image, int x, int y)
{
    double *values = nullptr;
    int count = 0;
    if (vips_getpoint(image, &values, &count, x, y, nullptr))
        return {};
    std::vector<int> pixel(values, values + count);
    g_free(values);
    return pixel;
}

// What each corner shows, top-left first: "mark", "background" or the pixel itself.
std::vector<std::string> corners(VipsImage *image, const Palette &palette, int tolerance)
{
    const auto near = [&](const std::vector<int> &pixel, const std::array<int, 4> &expected) {
        for (size_t band = 0; band < pixel.size() && band < expected.size(); ++band) {
            if (std::abs(pixel[band] - expected[band]) > tolerance)
                return false;
        }
        return !pixel.empty();
    };
    const int w = image->Xsize, h = image->Ysize;
    const int left = w / 10, right = w - 1 - w / 10, top = h / 10, bottom = h - 1 - h / 10;
    std::vector<std::string> shown;
    for (const auto &[x, y] : {std::pair {left, top}, {right, top}, {left, bottom}, {right, bottom}}) {
        const std::vector<int> pixel = pixelAt(image, x, y);
        if (near(pixel, palette.shownMark))
            shown.push_back("mark");
        else if (near(pixel, palette.shownBackground))
            shown.push_back("background");
        else {
            std::string text = "pixel";
            for (const int value : pixel)
                text += " " + std::to_string(value);
            shown.push_back(text);
        }
    }
    return shown;
}

std::vector<std::string> expectedCorners(Corner mark)
{
    std::vector<std::string> shown(4, "background");
    shown[size_t(mark)] = "mark";
    return shown;
}

// The markers before the scan, and the first step of the luminance quantisation table.
struct JpegLayout {
    std::vector<int> markers;
    int lumaDcStep = -1;
};

JpegLayout jpegLayout(const QByteArray &jpeg)
{
    JpegLayout layout;
    qsizetype pos = 2;
    while (pos + 4 <= jpeg.size() && quint8(jpeg[pos]) == 0xFF) {
        const int marker = quint8(jpeg[pos + 1]);
        layout.markers.push_back(marker);
        if (marker == 0xDB && layout.lumaDcStep < 0 && pos + 5 < jpeg.size() && (quint8(jpeg[pos + 4]) & 0x0F) == 0)
            layout.lumaDcStep = quint8(jpeg[pos + 5]);
        if (marker == 0xDA)
            break;
        pos += 2 + qFromBigEndian<quint16>(jpeg.constData() + pos + 2);
    }
    return layout;
}

std::vector<std::string> pngChunkTypes(const QByteArray &png)
{
    std::vector<std::string> types;
    qsizetype pos = 8;
    while (pos + 8 <= png.size()) {
        types.push_back(png.mid(pos + 4, 4).toStdString());
        pos += 12 + qsizetype(qFromBigEndian<quint32>(png.constData() + pos));
    }
    return types;
}

void expectCleanContainer(const QString &path)
{
    const QByteArray bytes = readAll(path);
    if (path.endsWith(QLatin1String(".jpg"))) {
        const JpegLayout layout = jpegLayout(bytes);
        EXPECT_THAT(layout.markers, Contains(0xC0)) << "baseline";
        EXPECT_THAT(layout.markers, Not(Contains(0xC2))) << "progressive";
        for (const int app : {0xE1, 0xE2, 0xED}) // EXIF and XMP, ICC, IPTC
            EXPECT_THAT(layout.markers, Not(Contains(app)));
        // Quality 85 makes libjpeg's luminance DC step 5; 75 would make it 8, 95 make it 2.
        EXPECT_THAT(layout.lumaDcStep, AllOf(Ge(4), Le(6)));
    } else {
        const std::vector<std::string> chunks = pngChunkTypes(bytes);
        ASSERT_FALSE(chunks.empty());
        EXPECT_EQ(chunks.front(), "IHDR");
        EXPECT_EQ(chunks.back(), "IEND");
        for (const char *chunk : {"iCCP", "eXIf", "tEXt", "zTXt", "iTXt"})
            EXPECT_THAT(chunks, Not(Contains(std::string(chunk))));
    }
}

class VipsDerivativeEncoderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(VipsRuntime::ensureStarted());
        ASSERT_TRUE(m_out.isValid());
    }
    static QString source(const char *file) { return Fixtures::get().path(file); }

    QTemporaryDir m_out;
    VipsDerivativeEncoder m_encoder;
};

class SourceEncodingTest : public VipsDerivativeEncoderTest, public ::testing::WithParamInterface<SourceCase> { };

TEST_P(SourceEncodingTest, WritesUprightSrgbTiersWithoutMetadata)
{
    const SourceCase &c = GetParam();
    if (!Fixtures::get().exists(c.file)) {
        if (c.optional)
            GTEST_SKIP() << "this libvips cannot write " << c.file;
        FAIL() << "fixture " << c.file << " could not be made";
    }
    if (isJpegSaver(c.saver)) {
        // Otherwise stripping would be tested on files that had nothing to strip.
        Decoded original = decode(source(c.file));
        ASSERT_TRUE(original.image.image);
        EXPECT_THAT(original.metadata, Contains(std::string(VIPS_META_EXIF_NAME)));
        EXPECT_THAT(original.metadata, Contains(std::string(VIPS_META_XMP_NAME)));
        EXPECT_EQ(vips_image_get_orientation(original.image.image), c.orientation);
        if (c.saver == Saver::wideGamutJpeg || c.saver == Saver::brokenProfileJpeg
            || c.saver == Saver::mismatchedProfileJpeg || c.saver == Saver::cmykJpeg)
            EXPECT_THAT(original.metadata, Contains(std::string(VIPS_META_ICC_NAME)));
    }
    if (c.pixels == Pixels::rgb16) {
        const Decoded original = decode(source(c.file));
        ASSERT_TRUE(original.image.image);
        ASSERT_EQ(original.image.image->BandFmt, VIPS_FORMAT_USHORT);
    }
    LogCapture log;

    const BundleDerivativeResult result
        = m_encoder.encode(source(c.file), tiersIn(m_out.path()), QStringLiteral("item"));

    ASSERT_TRUE(result.ok()) << result.error->toStdString();
    ASSERT_EQ(result.files.size(), 2u);
    const QString names[] = {QStringLiteral("full"), QStringLiteral("tile")};
    const QSize sizes[] = {c.full, c.tile};
    for (size_t i = 0; i < 2; ++i) {
        const BundleDerivativeFile &file = result.files[i];
        SCOPED_TRACE(names[i].toStdString());
        EXPECT_EQ(file.tier, names[i]);
        EXPECT_EQ(file.path, m_out.filePath(names[i] + QStringLiteral("/item") + QLatin1String(c.extension)));
        EXPECT_EQ(file.bytes, QFileInfo(file.path).size());
        EXPECT_EQ(QSize(file.width, file.height), sizes[i]);

        const Decoded written = decode(file.path);
        ASSERT_TRUE(written.image.image);
        EXPECT_EQ(QSize(written.image.image->Xsize, written.image.image->Ysize), sizes[i]);
        EXPECT_EQ(written.image.image->Bands, c.bands);
        EXPECT_EQ(written.image.image->BandFmt, VIPS_FORMAT_UCHAR);
        EXPECT_THAT(written.metadata, IsEmpty());
        EXPECT_EQ(corners(written.image.image, paletteOf(c.pixels), c.tolerance), expectedCorners(c.mark));
        expectCleanContainer(file.path);
    }
    EXPECT_EQ(filesUnder(m_out.path()),
        (std::vector<QString> {QStringLiteral("full/item") + QLatin1String(c.extension),
            QStringLiteral("tile/item") + QLatin1String(c.extension)}));
    EXPECT_THAT(log.take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sources, SourceEncodingTest, ::testing::ValuesIn(sourceCases),
    [](const ::testing::TestParamInfo<SourceCase> &info) {
        std::string name;
        for (const char *p = info.param.file; *p; ++p)
            name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
        return name;
    });

std::string describe(const std::optional<BundleImageInfo> &info)
{
    if (!info)
        return "refused";
    return std::to_string(info->width) + "x" + std::to_string(info->height) + ", " + std::to_string(info->frames)
        + (info->frames == 1 ? " frame, " : " frames, ") + (info->hasAlpha ? "alpha" : "opaque");
}

TEST_F(VipsDerivativeEncoderTest, InspectReadsUprightSizeFramesAndAlpha)
{
    const std::pair<const char *, const char *> cases[] = {
        {"opaque.png", "300x200, 1 frame, opaque"},
        {"alpha.png", "300x200, 1 frame, alpha"},
        {"grey-alpha.png", "300x200, 1 frame, alpha"},
        {"rotated-6.jpg", "200x300, 1 frame, opaque"},
        {"rotated-3.jpg", "300x200, 1 frame, opaque"},
        {"cmyk.jpg", "300x200, 1 frame, opaque"},
        {"first-frame.gif", "300x200, 2 frames, alpha"},
        {"animated.webp", "300x200, 2 frames, opaque"},
        // Pages of a document are not an animation.
        {"pages.tiff", "300x200, 1 frame, opaque"},
        {"notes.jpg", "refused"},
        {"missing.jpg", "refused"},
        {"huge.png", "refused"},
    };
    for (const auto &[file, expected] : cases) {
        SCOPED_TRACE(file);
        EXPECT_EQ(describe(m_encoder.inspect(source(file))), expected);
    }
}

TEST_F(VipsDerivativeEncoderTest, UndecodableSourcesFailWithTheirLogLineAndLeaveNoFiles)
{
    struct Case {
        const char *file;
        const char *error; // none: the decoder's own words
        const char *logTail;
    };
    const Case cases[] = {
        {"notes.jpg", "not decodable", "not decodable"},
        {"missing.jpg", "not decodable", "not decodable"},
        {"huge.png", "not decodable: 50000x50000 pixels is more than the encoder accepts", "not decodable"},
        {"truncated.jpg", nullptr, "no thumbnail"},
    };
    ASSERT_TRUE(Fixtures::get().exists("truncated.jpg"));
    // Decoded, huge.png would need 7.5 GB: it is refused without decoding.
    const qint64 peakBefore = peakResidentBytes();
    LogCapture log;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.file);

        const BundleDerivativeResult result = m_encoder.encode(source(c.file), tiersIn(m_out.path()), "item");

        ASSERT_FALSE(result.ok());
        if (c.error) {
            EXPECT_EQ(result.error, QString::fromUtf8(c.error));
        } else {
            EXPECT_FALSE(result.error->isEmpty());
            EXPECT_THAT(result.error->toStdString(), Not(StartsWith("not decodable")));
            EXPECT_THAT(result.error->toStdString(), Not(StartsWith("no thumbnail")));
        }
        EXPECT_THAT(result.files, IsEmpty());
        EXPECT_THAT(log.take(),
            ElementsAre(writerWarning(QStringLiteral("Derivative failed for %1: %2").arg(source(c.file), c.logTail))));
    }
    EXPECT_THAT(filesUnder(m_out.path()), IsEmpty());
    EXPECT_FALSE(m_encoder.inspect(source("huge.png")).has_value());
    EXPECT_TRUE(m_encoder.writePng(source("huge.png"), m_out.filePath("logo.png")).has_value());
    EXPECT_LT(peakResidentBytes() - peakBefore, qint64(64) << 20);
}

TEST_F(VipsDerivativeEncoderTest, WritesReplaceEarlierFilesAndFailuresLeaveNothing)
{
    std::vector<BundleTierTarget> tiers = tiersIn(m_out.path());
    ASSERT_TRUE(QDir().mkpath(tiers[0].directory));
    ASSERT_TRUE(writeAll(tiers[0].directory + QStringLiteral("/item.jpg"), "an older export"));
    const BundleDerivativeResult result = m_encoder.encode(source("upright.jpg"), tiers, "item");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(readAll(result.files[0].path).size(), result.files[0].bytes);
    EXPECT_EQ(filesUnder(m_out.path()),
        (std::vector<QString> {QStringLiteral("full/item.jpg"), QStringLiteral("tile/item.jpg")}));

    // The second tier's folder cannot be made: a file is in the way. The first tier, just written, goes again.
    ASSERT_TRUE(QDir(tiers[1].directory).removeRecursively());
    ASSERT_TRUE(writeAll(tiers[1].directory, "in the way"));
    LogCapture log;
    const BundleDerivativeResult failed = m_encoder.encode(source("opaque.png"), tiers, "item");
    ASSERT_FALSE(failed.ok());
    EXPECT_TRUE(failed.error->contains(tiers[1].directory)) << failed.error->toStdString();
    EXPECT_THAT(failed.files, IsEmpty());
    EXPECT_EQ(filesUnder(m_out.path()), std::vector<QString> {QStringLiteral("tile")});
    EXPECT_THAT(log.take(),
        ElementsAre(writerWarning(QStringLiteral("Derivative write failed for %1").arg(source("opaque.png")))));

    // Requests that cannot be met fail without writing.
    BundleRasterImage mismatched;
    mismatched.width = 640;
    mismatched.height = 360;
    mismatched.rgb = QByteArray(640 * 359 * 3, '\0');
    const QString elsewhere = m_out.filePath(QStringLiteral("elsewhere"));
    std::vector<BundleTierTarget> noEdge = tiersIn(elsewhere);
    noEdge[1].longEdge = 0;
    EXPECT_FALSE(m_encoder.encode(mismatched, tiersIn(elsewhere), "poster").ok());
    EXPECT_FALSE(m_encoder.encode(source("opaque.png"), noEdge, "item").ok());
    EXPECT_FALSE(m_encoder.encode(BundleRasterImage {}, tiersIn(elsewhere), "poster").ok());
    EXPECT_FALSE(QFileInfo::exists(elsewhere));
    EXPECT_EQ(log.take().size(), 3u);
}

TEST_F(VipsDerivativeEncoderTest, RasterImageBecomesJpegTiers)
{
    // Left half red, right half blue: a swapped channel order or a wrong stride shows.
    BundleRasterImage frame;
    frame.width = 640;
    frame.height = 360;
    frame.rgb.resize(640 * 360 * 3);
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            char *pixel = frame.rgb.data() + (qsizetype(y) * 640 + x) * 3;
            pixel[0] = char(x < 320 ? 220 : 30);
            pixel[1] = char(30);
            pixel[2] = char(x < 320 ? 30 : 220);
        }
    }
    LogCapture log;

    const BundleDerivativeResult result = m_encoder.encode(frame, tiersIn(m_out.path()), "poster");

    ASSERT_TRUE(result.ok()) << result.error->toStdString();
    ASSERT_EQ(result.files.size(), 2u);
    const QSize sizes[] = {{240, 135}, {100, 56}};
    for (size_t i = 0; i < 2; ++i) {
        const BundleDerivativeFile &file = result.files[i];
        SCOPED_TRACE(file.tier.toStdString());
        EXPECT_TRUE(file.path.endsWith(QLatin1String("/poster.jpg")));
        EXPECT_EQ(QSize(file.width, file.height), sizes[i]);
        EXPECT_EQ(file.bytes, QFileInfo(file.path).size());
        const Decoded written = decode(file.path);
        ASSERT_TRUE(written.image.image);
        EXPECT_EQ(QSize(written.image.image->Xsize, written.image.image->Ysize), sizes[i]);
        const int w = sizes[i].width(), h = sizes[i].height();
        const std::vector<int> left = pixelAt(written.image.image, w / 4, h / 2);
        const std::vector<int> right = pixelAt(written.image.image, w * 3 / 4, h / 2);
        ASSERT_EQ(left.size(), 3u);
        ASSERT_EQ(right.size(), 3u);
        EXPECT_GT(left[0], 190);
        EXPECT_LT(left[2], 60);
        EXPECT_LT(right[0], 60);
        EXPECT_GT(right[2], 190);
        expectCleanContainer(file.path);
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(VipsDerivativeEncoderTest, WritePngKeepsFullSizeUprightAndReplacesAtomically)
{
    const QString logo = m_out.filePath(QStringLiteral("branding/logo.png"));

    ASSERT_EQ(m_encoder.writePng(source("rotated-6.jpg"), logo), std::nullopt);
    {
        const Decoded written = decode(logo);
        ASSERT_TRUE(written.image.image);
        EXPECT_EQ(QSize(written.image.image->Xsize, written.image.image->Ysize), QSize(200, 300));
        EXPECT_EQ(written.image.image->Bands, 3);
        EXPECT_THAT(written.metadata, IsEmpty());
        EXPECT_EQ(corners(written.image.image, paletteOf(Pixels::rgb), 8), expectedCorners(Corner::topRight));
        expectCleanContainer(logo);
    }

    ASSERT_EQ(m_encoder.writePng(source("alpha.png"), logo), std::nullopt);
    const Decoded replaced = decode(logo);
    ASSERT_TRUE(replaced.image.image);
    EXPECT_EQ(replaced.image.image->Bands, 4);
    EXPECT_EQ(filesUnder(m_out.path()), std::vector<QString> {QStringLiteral("branding/logo.png")});

    LogCapture log;
    const auto error = m_encoder.writePng(source("notes.jpg"), m_out.filePath(QStringLiteral("other.png")));
    EXPECT_EQ(error, QStringLiteral("not decodable"));
    EXPECT_FALSE(QFileInfo::exists(m_out.filePath(QStringLiteral("other.png"))));
    EXPECT_THAT(log.take(),
        ElementsAre(writerWarning(QStringLiteral("Derivative failed for %1: not decodable").arg(source("notes.jpg")))));
}

// Everything a result says, with file contents by hash, relative to `root`.
std::string summary(const BundleDerivativeResult &result, const QString &root)
{
    if (!result.ok())
        return "error"; // libvips' error text is process-wide, so its wording may mix under threads
    std::string text;
    for (const BundleDerivativeFile &file : result.files) {
        text += file.tier.toStdString() + " " + QDir(root).relativeFilePath(file.path).toStdString() + " "
            + std::to_string(file.width) + "x" + std::to_string(file.height) + " " + std::to_string(file.bytes) + " "
            + QCryptographicHash::hash(readAll(file.path), QCryptographicHash::Md5).toHex().toStdString() + "; ";
    }
    return text;
}

TEST_F(VipsDerivativeEncoderTest, ConcurrentEncodesMatchSequentialOnes)
{
    const char *files[] = {"opaque.png", "alpha.png", "rotated-6.jpg", "cmyk.jpg", "deep.png", "grey.png",
        "first-frame.gif", "photo.webp", "truncated.jpg", "notes.jpg"};
    constexpr size_t count = std::size(files);
    const auto encodeOne = [&](size_t index, const QString &root) {
        return summary(
            m_encoder.encode(source(files[index]), tiersIn(root), QStringLiteral("item%1").arg(index)), root);
    };
    LogCapture log;
    std::vector<std::string> sequential;
    const QString sequentialRoot = m_out.filePath(QStringLiteral("sequential"));
    for (size_t i = 0; i < count; ++i)
        sequential.push_back(encodeOne(i, sequentialRoot));
    ASSERT_EQ(std::count(sequential.begin(), sequential.end(), "error"), 2);
    ASSERT_EQ(log.take().size(), 2u);

    constexpr int threadCount = 4;
    std::array<std::vector<std::string>, threadCount> answers;
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            const QString root = m_out.filePath(QStringLiteral("thread%1").arg(t));
            answers[size_t(t)].resize(count);
            start.arrive_and_wait();
            // Each thread starts elsewhere in the list, so different formats decode at once.
            for (size_t i = 0; i < count; ++i) {
                const size_t index = (i + size_t(t) * 3) % count;
                answers[size_t(t)][index] = encodeOne(index, root);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (int t = 0; t < threadCount; ++t)
        EXPECT_EQ(answers[size_t(t)], sequential) << "thread " << t;
    EXPECT_EQ(log.take().size(), size_t(2 * threadCount));
}

} // namespace
} // namespace sorvane
