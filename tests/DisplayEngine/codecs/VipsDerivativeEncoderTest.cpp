#include "codecs/VipsDerivativeEncoder.h"
#include "codecs/VipsRuntime.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"
#include "support/ThreadAgreement.h"

#include "ImageSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSize>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <cctype>
#include <memory>

namespace sorvane {
namespace {

using test::LogCapture;
using test::readAll;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;
using ::testing::StartsWith;

QString sample(const char *file)
{
    return test::imageSamples().path(QString::fromUtf8(file));
}

std::string writerWarning(const QString &text)
{
    return test::logLine("sorvane.writer", "warning", text);
}

enum Corner { TL, TR, BL, BR };

struct SourceCase {
    const char *file;
    const char *extension; // of the derivatives
    int bands;
    Corner mark; // where the stored top-left mark must appear
    QSize full, tile;
    bool grey = false;
    int alpha = 255;
    int tolerance = 8;
};

const QSize fullLandscape {240, 160}, tileLandscape {100, 67}, fullPortrait {160, 240}, tilePortrait {67, 100};

const SourceCase sourceCases[] = {
    {"opaque.png", ".jpg", 3, TL, fullLandscape, tileLandscape},
    {"alpha.png", ".png", 4, TL, fullLandscape, tileLandscape, false, 100},
    {"grey.png", ".jpg", 3, TL, fullLandscape, tileLandscape, true},
    {"upright.jpg", ".jpg", 3, TL, fullLandscape, tileLandscape},
    {"rotated-6.jpg", ".jpg", 3, TR, fullPortrait, tilePortrait},
    // Smaller than both tiers: kept at its own size.
    {"small.jpg", ".jpg", 3, TL, {80, 53}, {80, 53}},
    {"cmyk.jpg", ".jpg", 3, TL, fullLandscape, tileLandscape, false, 255, 40},
    {"wide-gamut.jpg", ".jpg", 3, TL, fullLandscape, tileLandscape, false, 255, 10},
    {"broken-profile.jpg", ".jpg", 3, TL, fullLandscape, tileLandscape},
    {"mismatched-profile.jpg", ".jpg", 3, TL, fullLandscape, tileLandscape, true},
    // libvips reads GIFs with an alpha band; the second frame is blue.
    {"first-frame.gif", ".png", 4, TL, fullLandscape, tileLandscape},
    {"animated.webp", ".jpg", 3, TL, fullLandscape, tileLandscape},
    {"pages.tiff", ".png", 4, TL, fullLandscape, tileLandscape},
    {"photo.heic", ".jpg", 3, TL, fullLandscape, tileLandscape, false, 255, 30},
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

using Image = std::unique_ptr<VipsImage, decltype(&g_object_unref)>;

// A file decoded into memory, with the names of the metadata fields it carries.
struct Decoded {
    Image image {nullptr, g_object_unref};
    std::vector<std::string> metadata;
    QSize size() const { return image ? QSize(image->Xsize, image->Ysize) : QSize(); }
};

Decoded decode(const QString &path)
{
    Decoded decoded;
    const Image loaded(vips_image_new_from_file(QFile::encodeName(path).constData(), nullptr), g_object_unref);
    if (!loaded)
        return decoded;
    for (const char *field :
        {VIPS_META_EXIF_NAME, VIPS_META_XMP_NAME, VIPS_META_ICC_NAME, VIPS_META_IPTC_NAME, VIPS_META_ORIENTATION}) {
        if (vips_image_get_typeof(loaded.get(), field))
            decoded.metadata.push_back(field);
    }
    decoded.image.reset(vips_image_copy_memory(loaded.get()));
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
std::vector<std::string> corners(VipsImage *image, const SourceCase &c)
{
    const int mark = c.grey ? 200 : 220, markGb = c.grey ? 200 : 30, background = c.grey ? 60 : 128;
    const auto near = [&](const std::vector<int> &pixel, std::array<int, 4> expected) {
        for (size_t band = 0; band < pixel.size() && band < expected.size(); ++band) {
            if (std::abs(pixel[band] - expected[band]) > c.tolerance)
                return false;
        }
        return !pixel.empty();
    };
    const int w = image->Xsize, h = image->Ysize;
    std::vector<std::string> shown;
    for (const auto &[x, y] : {std::pair {w / 10, h / 10}, {w - 1 - w / 10, h / 10}, {w / 10, h - 1 - h / 10},
             {w - 1 - w / 10, h - 1 - h / 10}}) {
        const std::vector<int> pixel = pixelAt(image, x, y);
        if (near(pixel, {mark, markGb, markGb, c.alpha}))
            shown.push_back("mark");
        else if (near(pixel, {background, background, background, c.alpha}))
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

// A JPEG derivative is baseline at quality 85 (metadata is checked on the decoded pixels).
void expectBaselineQuality85(const QString &path)
{
    if (!path.endsWith(QLatin1String(".jpg")))
        return;
    const QByteArray bytes = readAll(path);
    std::vector<int> markers;
    int lumaDcStep = -1;
    for (qsizetype pos = 2; pos + 4 <= bytes.size() && quint8(bytes[pos]) == 0xFF;
         pos += 2 + qFromBigEndian<quint16>(bytes.constData() + pos + 2)) {
        markers.push_back(quint8(bytes[pos + 1]));
        if (markers.back() == 0xDB && lumaDcStep < 0 && (quint8(bytes[pos + 4]) & 0x0F) == 0)
            lumaDcStep = quint8(bytes[pos + 5]);
        if (markers.back() == 0xDA)
            break;
    }
    EXPECT_THAT(markers, Contains(0xC0)) << "baseline";
    EXPECT_THAT(markers, Not(Contains(0xC2))) << "progressive";
    // Quality 85 makes libjpeg's luminance DC step 5; 75 would make it 8, 95 make it 2.
    EXPECT_THAT(lumaDcStep, AllOf(Ge(4), Le(6)));
}

class VipsDerivativeEncoderTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(VipsRuntime::ensureStarted());
        ASSERT_TRUE(m_out.isValid());
    }

    QTemporaryDir m_out;
    VipsDerivativeEncoder m_encoder;
};

class SourceEncodingTest : public VipsDerivativeEncoderTest, public ::testing::WithParamInterface<SourceCase> { };

TEST_P(SourceEncodingTest, WritesUprightSrgbTiersWithoutMetadata)
{
    const SourceCase &c = GetParam();
    const QString source = sample(c.file);
    if (c.file == std::string("photo.heic") && !QFileInfo::exists(source))
        GTEST_SKIP() << "this libvips cannot write HEIF";
    if (source.endsWith(QLatin1String(".jpg"))) // otherwise stripping is tested on files with nothing to strip
        EXPECT_THAT(decode(source).metadata, Not(IsEmpty()));
    LogCapture log;
    // The header alone tells the upright size (the samples are 300 x 200 as stored) and the
    // frames: only GIF and WebP animate, the pages of a document do not.
    const QSize upright = c.full == c.tile ? c.full : c.full * 1.25;
    const int frames = source.endsWith(QLatin1String(".gif")) || c.file == std::string("animated.webp") ? 2 : 1;
    const std::optional<BundleImageInfo> info = m_encoder.inspect(source);
    ASSERT_TRUE(info.has_value());
    EXPECT_EQ(QSize(info->width, info->height), upright);
    EXPECT_EQ(info->frames, frames);
    EXPECT_EQ(info->hasAlpha, c.bands == 4);

    const BundleDerivativeResult result = m_encoder.encode(source, tiersIn(m_out.path()), QStringLiteral("item"));

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
        ASSERT_TRUE(written.image);
        EXPECT_EQ(written.size(), sizes[i]);
        EXPECT_EQ(written.image->Bands, c.bands);
        EXPECT_EQ(written.image->BandFmt, VIPS_FORMAT_UCHAR);
        EXPECT_THAT(written.metadata, IsEmpty());
        EXPECT_EQ(corners(written.image.get(), c), expectedCorners(c.mark));
        expectBaselineQuality85(file.path);
    }
    EXPECT_EQ(filesUnder(m_out.path()).size(), 2u);

    // The logo form keeps the full size, upright.
    const QString logo = m_out.filePath(QStringLiteral("branding/logo.png"));
    ASSERT_EQ(m_encoder.writePng(source, logo), std::nullopt);
    const Decoded written = decode(logo);
    ASSERT_EQ(written.size(), upright);
    EXPECT_EQ(written.image->Bands, c.bands);
    EXPECT_THAT(written.metadata, IsEmpty());
    EXPECT_EQ(corners(written.image.get(), c), expectedCorners(c.mark));
    EXPECT_THAT(log.take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sources, SourceEncodingTest, ::testing::ValuesIn(sourceCases),
    [](const ::testing::TestParamInfo<SourceCase> &info) {
        std::string name = info.param.file;
        std::replace_if(
            name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
        return name;
    });

TEST_F(VipsDerivativeEncoderTest, UndecodableSourcesFailWithTheirLogLineAndLeaveNoFiles)
{
    const struct {
        const char *file;
        const char *error; // none: the decoder's own words
        const char *logTail;
    } cases[] = {
        {"notes.jpg", "not decodable", "not decodable"},
        {"huge.png", "not decodable: 50000x50000 pixels is more than the encoder accepts", "not decodable"},
        {"truncated.jpg", nullptr, "no thumbnail"},
    };
    // Decoded, huge.png would need 7.5 GB: it is refused without decoding.
    const qint64 peakBefore = test::peakResidentBytes();
    LogCapture log;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.file);
        const BundleDerivativeResult result = m_encoder.encode(sample(c.file), tiersIn(m_out.path()), "item");
        ASSERT_FALSE(result.ok());
        if (c.error) {
            EXPECT_EQ(result.error, QString::fromUtf8(c.error));
        } else {
            EXPECT_FALSE(result.error->isEmpty());
            EXPECT_THAT(result.error->toStdString(), Not(StartsWith("not decodable")));
            EXPECT_THAT(result.error->toStdString(), Not(StartsWith("no thumbnail")));
        }
        EXPECT_THAT(result.files, IsEmpty());
        // A truncated file's header still reads.
        EXPECT_EQ(m_encoder.inspect(sample(c.file)).has_value(), !c.error);
        EXPECT_THAT(log.take(),
            ElementsAre(writerWarning(QStringLiteral("Derivative failed for %1: %2").arg(sample(c.file), c.logTail))));
    }
    for (const char *file : {"notes.jpg", "huge.png"})
        EXPECT_TRUE(m_encoder.writePng(sample(file), m_out.filePath("logo.png")).has_value()) << file;
    EXPECT_THAT(filesUnder(m_out.path()), IsEmpty());
    EXPECT_LT(test::peakResidentBytes() - peakBefore, qint64(64) << 20);
}

TEST_F(VipsDerivativeEncoderTest, WritesReplaceEarlierFilesAndFailuresLeaveNothing)
{
    std::vector<BundleTierTarget> tiers = tiersIn(m_out.path());
    ASSERT_TRUE(QDir().mkpath(tiers[0].directory));
    ASSERT_TRUE(test::writeAll(tiers[0].directory + QStringLiteral("/item.jpg"), "an older export"));
    const BundleDerivativeResult result = m_encoder.encode(sample("upright.jpg"), tiers, "item");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(readAll(result.files[0].path).size(), result.files[0].bytes);
    EXPECT_EQ(filesUnder(m_out.path()),
        (std::vector<QString> {QStringLiteral("full/item.jpg"), QStringLiteral("tile/item.jpg")}));

    // The second tier's folder cannot be made: a file is in the way. The first tier, just written, goes again.
    ASSERT_TRUE(QDir(tiers[1].directory).removeRecursively());
    ASSERT_TRUE(test::writeAll(tiers[1].directory, "in the way"));
    LogCapture log;
    const BundleDerivativeResult failed = m_encoder.encode(sample("opaque.png"), tiers, "item");
    ASSERT_FALSE(failed.ok());
    EXPECT_TRUE(failed.error->contains(tiers[1].directory)) << failed.error->toStdString();
    EXPECT_THAT(failed.files, IsEmpty());
    EXPECT_EQ(filesUnder(m_out.path()), std::vector<QString> {QStringLiteral("tile")});
    EXPECT_THAT(log.take(),
        ElementsAre(writerWarning(QStringLiteral("Derivative write failed for %1").arg(sample("opaque.png")))));

    // Requests that cannot be met fail without writing.
    BundleRasterImage mismatched;
    mismatched.width = 640;
    mismatched.height = 360;
    mismatched.rgb = QByteArray(640 * 359 * 3, '\0');
    const QString elsewhere = m_out.filePath(QStringLiteral("elsewhere"));
    std::vector<BundleTierTarget> noEdge = tiersIn(elsewhere);
    noEdge[1].longEdge = 0;
    EXPECT_FALSE(m_encoder.encode(mismatched, tiersIn(elsewhere), "poster").ok());
    EXPECT_FALSE(m_encoder.encode(sample("opaque.png"), noEdge, "item").ok());
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
    for (int i = 0; i < 640 * 360; ++i)
        frame.rgb += i % 640 < 320 ? QByteArray("\xDC\x1E\x1E", 3) : QByteArray("\x1E\x1E\xDC", 3);
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
        const Decoded written = decode(file.path);
        ASSERT_EQ(written.size(), sizes[i]);
        const int w = sizes[i].width(), h = sizes[i].height();
        const std::vector<int> left = pixelAt(written.image.get(), w / 4, h / 2);
        const std::vector<int> right = pixelAt(written.image.get(), w * 3 / 4, h / 2);
        ASSERT_EQ(left.size(), 3u);
        ASSERT_EQ(right.size(), 3u);
        EXPECT_TRUE(left[0] > 190 && left[2] < 60 && right[0] < 60 && right[2] > 190)
            << left[0] << " " << left[2] << " " << right[0] << " " << right[2];
    }
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(VipsDerivativeEncoderTest, ConcurrentEncodesMatchSequentialOnes)
{
    const char *files[] = {"opaque.png", "alpha.png", "rotated-6.jpg", "cmyk.jpg", "deep.png", "grey.png",
        "first-frame.gif", "small.jpg", "truncated.jpg", "notes.jpg"};
    for (const char *file : files)
        sample(file);
    std::atomic<int> calls = 0;
    LogCapture log;
    // Everything a result says, with file contents by hash. libvips' error text is process-wide,
    // so its wording may mix under threads: a failure is only "error".
    const std::vector<std::string> sequential = test::expectSameAnswersOnThreads(std::size(files), [&](size_t i) {
        const QString root = m_out.filePath(QString::number(calls++));
        const BundleDerivativeResult result = m_encoder.encode(sample(files[i]), tiersIn(root), "item");
        std::string text = result.ok() ? "" : "error";
        for (const BundleDerivativeFile &file : result.files) {
            text += file.tier.toStdString() + " " + QDir(root).relativeFilePath(file.path).toStdString() + " "
                + std::to_string(file.width) + "x" + std::to_string(file.height) + " " + std::to_string(file.bytes)
                + " " + QCryptographicHash::hash(readAll(file.path), QCryptographicHash::Md5).toHex().toStdString();
        }
        return text;
    });
    EXPECT_EQ(std::count(sequential.begin(), sequential.end(), "error"), 2);
    EXPECT_EQ(log.take().size(), 2u * 5);
}

} // namespace
} // namespace sorvane
