#include "codecs/FfmpegVideoSource.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <functional>
#include <latch>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sorvane {
namespace {

using test::LogCapture;
using test::readAll;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// The ladder's lines are info messages, which the environment's logging rules may hide.
const QString writerInfoOn = QStringLiteral("sorvane.writer.info=true");

std::string rungOneFailed(const QString &path)
{
    return test::logLine("sorvane.writer", "info", "Poster rung 1 failed for " + path + "; retrying early.");
}

std::string noPoster(const QString &path)
{
    return test::logLine(
        "sorvane.writer", "warning", "No poster frame available for " + path + "; the item will be omitted.");
}

// ---- Fixture videos, made with the ffmpeg tool at run time -------------------------------

bool runFfmpeg(const QStringList &arguments, const QString &standardOutput = {})
{
    QProcess process;
    if (!standardOutput.isEmpty())
        process.setStandardOutputFile(standardOutput);
    process.start(QStringLiteral("ffmpeg"),
        QStringList {QStringLiteral("-hide_banner"), QStringLiteral("-nostdin"), QStringLiteral("-loglevel"),
            QStringLiteral("error"), QStringLiteral("-y")}
            + arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        ADD_FAILURE() << "ffmpeg " << arguments.join(QLatin1Char(' ')).toStdString()
                      << " failed: " << process.readAllStandardError().toStdString();
        return false;
    }
    return true;
}

const QString &encoderList()
{
    static const QString list = [] {
        QProcess process;
        process.start(QStringLiteral("ffmpeg"), {QStringLiteral("-hide_banner"), QStringLiteral("-encoders")});
        process.waitForFinished(-1);
        return QString::fromUtf8(process.readAllStandardOutput());
    }();
    return list;
}

bool hasEncoder(const char *name)
{
    return encoderList().contains(QLatin1Char(' ') + QLatin1String(name) + QLatin1Char(' '));
}

bool hasH264()
{
    return hasEncoder("libx264");
}

// H.264 where this ffmpeg can make it, MPEG-4 part 2 otherwise.
QStringList commonVideoCodec()
{
    if (hasH264())
        return {QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-preset"),
            QStringLiteral("veryfast"), QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p")};
    return {QStringLiteral("-c:v"), QStringLiteral("mpeg4"), QStringLiteral("-q:v"), QStringLiteral("3")};
}

QString commonVideoCodecName()
{
    return hasH264() ? QStringLiteral("h264") : QStringLiteral("mpeg4");
}

// Options for the common codec that keep its only keyframe at the start, scene cuts or not.
QStringList onlyFirstKeyframe(int frames)
{
    const QString interval = QString::number(frames * 2);
    if (hasH264()) // x264 turns scene-cut detection off at 0
        return {QStringLiteral("-g"), interval, QStringLiteral("-keyint_min"), interval,
            QStringLiteral("-sc_threshold"), QStringLiteral("0")};
    // The native encoder needs a threshold nothing reaches, and leave to exceed its usual 600-frame interval.
    return {QStringLiteral("-g"), interval, QStringLiteral("-sc_threshold"), QStringLiteral("1000000000"),
        QStringLiteral("-strict"), QStringLiteral("experimental")};
}

enum class Codec { common, vp9 };

// A clip whose colour says when a frame was shown: red, then blue during the band, then lime.
struct Clip {
    QString file; // the extension picks the muxer
    int width = 320;
    int height = 240;
    double seconds = 4;
    double blueFrom = 1.5;
    double blueTo = 2.5;
    bool audio = true;
    double audioSeconds = 0; // 0: as long as the video
    Codec codec = Codec::common;
    QStringList extra; // more output options
    bool piped = false; // written to a pipe, so the muxer cannot go back to record the duration
    QString pipedFormat; // the muxer for a piped clip
    bool elementary = false; // a bare video stream without a container, so without any duration
};

// What the demuxer calls a bare stream of the common codec.
std::string elementaryName()
{
    return hasH264() ? "h264" : "m4v";
}

QString bandSource(const Clip &clip)
{
    return QStringLiteral("color=c=red:s=%1x%2:r=25:d=%3,"
                          "drawbox=x=0:y=0:w=iw:h=ih:color=blue:t=fill:enable='between(t,%4,%5)',"
                          "drawbox=x=0:y=0:w=iw:h=ih:color=lime:t=fill:enable='gt(t,%5)'")
        .arg(clip.width)
        .arg(clip.height)
        .arg(clip.seconds)
        .arg(clip.blueFrom)
        .arg(clip.blueTo);
}

bool makeClip(const Clip &clip, const QString &path)
{
    QStringList arguments {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), bandSource(clip)};
    if (clip.audio)
        arguments << QStringLiteral("-f") << QStringLiteral("lavfi") << QStringLiteral("-i")
                  << QStringLiteral("sine=frequency=440:duration=%1")
                         .arg(clip.audioSeconds > 0 ? clip.audioSeconds : clip.seconds);
    if (clip.codec == Codec::vp9)
        arguments << QStringLiteral("-c:v") << QStringLiteral("libvpx-vp9") << QStringLiteral("-deadline")
                  << QStringLiteral("realtime") << QStringLiteral("-b:v") << QStringLiteral("200k");
    else
        arguments << commonVideoCodec();
    if (clip.audio)
        arguments << QStringLiteral("-c:a")
                  << (clip.codec == Codec::vp9 ? QStringLiteral("libopus") : QStringLiteral("aac"));
    arguments << clip.extra;
    if (clip.elementary)
        arguments << QStringLiteral("-f") << QString::fromStdString(elementaryName());
    if (clip.piped)
        return runFfmpeg(arguments << QStringLiteral("-f") << clip.pipedFormat << QStringLiteral("-"), path);
    return runFfmpeg(arguments << path);
}

// One folder of fixture files for the whole test program, each made the first time it is asked for.
class Fixtures {
public:
    static Fixtures &instance()
    {
        static Fixtures fixtures;
        return fixtures;
    }

    QString path(const QString &file) const { return m_dir.filePath(file); }

    QString clip(const Clip &clip)
    {
        const QString target = path(clip.file);
        if (!m_made.contains(clip.file) && makeClip(clip, target))
            m_made.insert(clip.file);
        return target;
    }

    QString write(const QString &file, const QByteArray &bytes) const
    {
        QFile out(path(file));
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            ADD_FAILURE() << "cannot write " << file.toStdString();
        return out.fileName();
    }

private:
    QTemporaryDir m_dir;
    std::set<QString> m_made;
};

// ---- Reading posters ---------------------------------------------------------------------

struct Rgb {
    int r = 0, g = 0, b = 0;
};

// The mean colour of a small block centred at a fraction of the width and height.
Rgb meanAt(const BundleRasterImage &image, double fx, double fy)
{
    const int cx = std::clamp(int(fx * image.width), 0, image.width - 1);
    const int cy = std::clamp(int(fy * image.height), 0, image.height - 1);
    Rgb sum;
    int count = 0;
    for (int y = std::max(0, cy - 2); y <= std::min(image.height - 1, cy + 2); ++y) {
        for (int x = std::max(0, cx - 2); x <= std::min(image.width - 1, cx + 2); ++x) {
            const auto *pixel
                = reinterpret_cast<const uchar *>(image.rgb.constData()) + (qsizetype(y) * image.width + x) * 3;
            sum.r += pixel[0];
            sum.g += pixel[1];
            sum.b += pixel[2];
            ++count;
        }
    }
    return {sum.r / count, sum.g / count, sum.b / count};
}

// Names the fixture colour a block is close to, allowing for lossy coding.
std::string colourAt(const BundleRasterImage &image, double fx = 0.5, double fy = 0.5)
{
    if (!image.isValid())
        return "invalid image";
    const Rgb mean = meanAt(image, fx, fy);
    const std::array<std::pair<const char *, Rgb>, 4> named {{
        {"red", {255, 0, 0}},
        {"lime", {0, 255, 0}},
        {"blue", {0, 0, 255}},
        {"yellow", {255, 255, 0}},
    }};
    for (const auto &[name, reference] : named) {
        if (std::abs(mean.r - reference.r) < 48 && std::abs(mean.g - reference.g) < 48
            && std::abs(mean.b - reference.b) < 48)
            return name;
    }
    return "other(" + std::to_string(mean.r) + "," + std::to_string(mean.g) + "," + std::to_string(mean.b) + ")";
}

const char *outcomeName(BundlePosterOutcome outcome)
{
    switch (outcome) {
    case BundlePosterOutcome::firstAttempt:
        return "firstAttempt";
    case BundlePosterOutcome::fallback:
        return "fallback";
    case BundlePosterOutcome::unavailable:
        return "unavailable";
    }
    return "?";
}

// Everything an inspection says, as one comparable text (the poster by its hash).
std::string describe(const BundleVideoInspection &inspection)
{
    std::string text = std::to_string(inspection.width) + "x" + std::to_string(inspection.height) + " "
        + std::to_string(inspection.durationSeconds) + "s " + inspection.container.toStdString() + " "
        + inspection.videoCodec.toStdString() + " audio=" + (inspection.hasAudio ? "yes:" : "no:")
        + inspection.audioCodec.value_or(QStringLiteral("-")).toStdString() + " "
        + outcomeName(inspection.posterOutcome)
        + " error=" + inspection.error.value_or(QStringLiteral("-")).toStdString();
    if (inspection.poster)
        text += " poster=" + std::to_string(inspection.poster->width) + "x" + std::to_string(inspection.poster->height)
            + ":" + QCryptographicHash::hash(inspection.poster->rgb, QCryptographicHash::Sha1).toHex().toStdString();
    return text;
}

// ---- Clips that inspect fully -----------------------------------------------------------

struct ClipCase {
    std::string name;
    Clip clip;
    std::string container; // empty: the bare stream's own name
    bool vp9 = false;
    std::optional<QString> audioCodec;
    double duration = 0; // 0: the file records none
    int width = 0;
    int height = 0;
    int posterWidth = 0;
    int posterHeight = 0;
};

// No duration anywhere: the first attempt is at 0.5 s, inside the band; half of 2 s would be lime.
Clip rawStreamClip()
{
    return {.file = QStringLiteral("raw.es"),
        .seconds = 2,
        .blueFrom = 0.3,
        .blueTo = 0.7,
        .audio = false,
        .elementary = true};
}

// A clip without sound, blue from `from` to `to` seconds.
Clip silent(const char *file, double seconds, double from, double to, const QStringList &extra = {})
{
    return {.file = QString::fromLatin1(file),
        .seconds = seconds,
        .blueFrom = from,
        .blueTo = to,
        .audio = false,
        .extra = extra};
}

Clip sized(Clip clip, int width, int height)
{
    clip.width = width;
    clip.height = height;
    return clip;
}

std::vector<ClipCase> clipCases()
{
    const std::optional<QString> aac = QStringLiteral("aac");
    const std::optional<QString> none;
    Clip piped = silent("piped.mkv", 2, 0.3, 0.7);
    piped.piped = true;
    piped.pipedFormat = QStringLiteral("matroska");
    // Half of 4 s is 2 s, inside the blue band; t = 0 would be red, the end lime.
    return {
        {"mp4WithAudio", {.file = QStringLiteral("av.mp4")}, "mp4", false, aac, 4, 320, 240, 320, 240},
        {"mp4WithoutAudio", silent("silent.mp4", 4, 1.5, 2.5), "mp4", false, none, 4, 320, 240, 320, 240},
        // Without a telling extension, the brand inside names a QuickTime-family container.
        {"mp4UnderOtherName", {.file = QStringLiteral("mp4-named.bin"), .extra = {"-f", "mp4"}}, "mp4", false, aac, 4,
            320, 240, 320, 240},
        {"movUnderOtherName", {.file = QStringLiteral("mov-named.bin"), .extra = {"-f", "mov"}}, "mov", false, aac, 4,
            320, 240, 320, 240},
        // Shorter than the fallback time: only half the duration lands inside it.
        {"shorterThanHalfSecond", silent("short.mp4", 0.4, 0.12, 0.28), "mp4", false, none, 0.4, 320, 240, 320, 240},
        {"rawElementaryStream", rawStreamClip(), "", false, none, 0, 320, 240, 320, 240},
        {"matroskaWithoutDuration", piped, "matroska", false, none, 0, 320, 240, 320, 240},
        // Pixels twice as wide as tall are shown stretched.
        {"nonSquarePixels", silent("anamorphic.mp4", 2, 0.5, 1.5, {"-vf", "setsar=2/1"}), "mp4", false, none, 2, 640,
            240, 640, 240},
        {"ultraHd", sized(silent("uhd.mp4", 1, 0.3, 0.7), 3840, 2160), "mp4", false, none, 1, 3840, 2160, 2160, 1215},
        {"tallUltraHd", sized(silent("uhd-tall.mp4", 1, 0.3, 0.7), 1080, 3840), "mp4", false, none, 1, 1080, 3840, 608,
            2160},
        // No frame is shown from 1.88 s to 2.92 s: the one before the gap is nearer to 2 s than
        // the tolerance, the one after is not. The frames after the gap are lime.
        {"frameBeforeGap",
            silent("gap.mp4", 3, 1, 1.9, {"-vf", "setpts='if(gte(N,48),PTS+1/TB,PTS)'", "-fps_mode", "passthrough"}),
            "mp4", false, none, 4, 320, 240, 320, 240},
        // Half the file's duration lies past the last frame, which then stands in; it is blue, half the video red.
        {"audioOutlastsVideo",
            {.file = QStringLiteral("long-audio.mp4"), .seconds = 2, .blueFrom = 1.5, .blueTo = 2.5, .audioSeconds = 6},
            "mp4", false, aac, 6, 320, 240, 320, 240},
        {"vp9WebM",
            {.file = QStringLiteral("clip.webm"), .seconds = 2, .blueFrom = 0.5, .blueTo = 1.5, .codec = Codec::vp9},
            "matroska", true, QStringLiteral("opus"), 2, 320, 240, 320, 240},
    };
}

void PrintTo(const ClipCase &c, std::ostream *out)
{
    *out << c.name;
}

class FfmpegVideoSourceClip : public ::testing::TestWithParam<ClipCase> { };

TEST_P(FfmpegVideoSourceClip, ReadsMetadataAndTakesPosterFromTheMiddle)
{
    const ClipCase &c = GetParam();
    if (c.vp9 && (!hasEncoder("libvpx-vp9") || !hasEncoder("libopus")))
        GTEST_SKIP() << "this ffmpeg cannot encode VP9 with Opus";
    const QString path = Fixtures::instance().clip(c.clip);
    LogCapture log(writerInfoOn);

    const BundleVideoInspection inspection = FfmpegVideoSource().inspect(path);

    EXPECT_FALSE(inspection.error.has_value()) << inspection.error.value_or(QString()).toStdString();
    EXPECT_EQ(inspection.container.toStdString(), c.container.empty() ? elementaryName() : c.container);
    EXPECT_EQ(inspection.videoCodec, c.vp9 ? QStringLiteral("vp9") : commonVideoCodecName());
    EXPECT_EQ(inspection.audioCodec, c.audioCodec);
    EXPECT_EQ(inspection.hasAudio, c.audioCodec.has_value());
    if (c.duration > 0)
        EXPECT_NEAR(inspection.durationSeconds, c.duration, 0.1);
    else
        EXPECT_EQ(inspection.durationSeconds, 0);
    EXPECT_EQ(inspection.width, c.width);
    EXPECT_EQ(inspection.height, c.height);
    EXPECT_EQ(outcomeName(inspection.posterOutcome), std::string("firstAttempt"));
    ASSERT_TRUE(inspection.poster.has_value());
    EXPECT_TRUE(inspection.poster->isValid());
    EXPECT_EQ(inspection.poster->width, c.posterWidth);
    EXPECT_EQ(inspection.poster->height, c.posterHeight);
    EXPECT_EQ(colourAt(*inspection.poster), "blue") << "the poster is not from the requested time";
    EXPECT_THAT(log.take(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(FfmpegClips, FfmpegVideoSourceClip, ::testing::ValuesIn(clipCases()),
    [](const ::testing::TestParamInfo<ClipCase> &info) { return info.param.name; });

// ---- Rotation ----------------------------------------------------------------------------

struct RotationCase {
    std::string name;
    int rotateTag; // the QuickTime "rotate" tag ffmpeg turns into a display matrix
    int width, height; // as shown
    double markerX, markerY; // where the stored top-left marker appears once upright
};

// A blue frame with a yellow marker in its top-left quarter, stored with a display rotation.
QString rotatedClip(int rotateTag)
{
    Fixtures &fixtures = Fixtures::instance();
    const QString plain = fixtures.path(QStringLiteral("marker.mp4"));
    if (!QFile::exists(plain))
        runFfmpeg(QStringList {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                      QStringLiteral("color=c=blue:s=320x240:r=25:d=1,drawbox=x=0:y=0:w=80:h=60:color=yellow:t=fill")}
            + commonVideoCodec() + QStringList {plain});
    const QString rotated = fixtures.path(QStringLiteral("rotated-%1.mp4").arg(rotateTag));
    if (!QFile::exists(rotated))
        runFfmpeg({QStringLiteral("-i"), plain, QStringLiteral("-c"), QStringLiteral("copy"),
            QStringLiteral("-metadata:s:v:0"), QStringLiteral("rotate=%1").arg(rotateTag), rotated});
    return rotated;
}

void PrintTo(const RotationCase &c, std::ostream *out)
{
    *out << c.name;
}

class FfmpegVideoSourceRotation : public ::testing::TestWithParam<RotationCase> { };

TEST_P(FfmpegVideoSourceRotation, ReportsShownSizeAndTurnsPosterUpright)
{
    const RotationCase &c = GetParam();
    const BundleVideoInspection inspection = FfmpegVideoSource().inspect(rotatedClip(c.rotateTag));

    EXPECT_EQ(inspection.width, c.width);
    EXPECT_EQ(inspection.height, c.height);
    ASSERT_TRUE(inspection.poster.has_value());
    EXPECT_EQ(inspection.poster->width, c.width);
    EXPECT_EQ(inspection.poster->height, c.height);
    // The marker is in exactly one corner: the one the display rotation moves it to.
    const std::array<std::pair<double, double>, 4> corners {{{0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}}};
    for (const auto &[x, y] : corners) {
        const bool expected = x == c.markerX && y == c.markerY;
        EXPECT_EQ(colourAt(*inspection.poster, x, y), expected ? "yellow" : "blue") << "corner " << x << "," << y;
    }
}

// This ffmpeg stores the tag as a counter-clockwise display turn; its own player shows the
// "rotate=90" clip with the marker bottom-left, which these cases follow. "rotate=270" writes
// the same matrix as a phone filming upright.
INSTANTIATE_TEST_SUITE_P(FfmpegRotations, FfmpegVideoSourceRotation,
    ::testing::Values(RotationCase {"none", 0, 320, 240, 0.1, 0.1}, RotationCase {"quarter", 90, 240, 320, 0.1, 0.9},
        RotationCase {"half", 180, 320, 240, 0.9, 0.9}, RotationCase {"threeQuarters", 270, 240, 320, 0.9, 0.1}),
    [](const ::testing::TestParamInfo<RotationCase> &info) { return info.param.name; });

// ---- Files that are not usable videos ----------------------------------------------------

// The length of the file up to and including the header of its first top-level box of this type.
std::optional<qsizetype> endOfBoxHeader(const QByteArray &mp4, const char *type)
{
    qsizetype offset = 0;
    while (offset + 8 <= mp4.size()) {
        const quint32 size = qFromBigEndian<quint32>(mp4.constData() + offset);
        if (mp4.mid(offset + 4, 4) == type)
            return offset + 8;
        if (size < 8)
            return std::nullopt;
        offset += size;
    }
    return std::nullopt;
}

QByteArray pseudoRandomBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = 0x9E3779B9u;
    for (char &byte : bytes) {
        state = state * 1664525u + 1013904223u;
        byte = char(state >> 24);
    }
    return bytes;
}

struct RefusalCase {
    std::string name;
    std::function<QString()> make;
    bool errorExpected; // false: the file may open, but must yield no poster
    std::string errorContains;
};

std::vector<RefusalCase> refusalCases()
{
    return {
        {"missingFile", [] { return Fixtures::instance().path(QStringLiteral("absent.mp4")); }, true, "No such file"},
        {"zeroBytes", [] { return Fixtures::instance().write(QStringLiteral("empty.mp4"), {}); }, true, ""},
        {"randomBytes",
            [] { return Fixtures::instance().write(QStringLiteral("noise.mp4"), pseudoRandomBytes(200000)); }, false,
            ""},
        {"text", [] { return Fixtures::instance().write(QStringLiteral("notes.mov"), "just some words\n"); }, true, ""},
        // The index sits at the end of an ordinary MP4, so the first 30% holds none.
        {"truncatedMp4",
            [] {
                const QByteArray whole = readAll(Fixtures::instance().clip({.file = QStringLiteral("av.mp4")}));
                return Fixtures::instance().write(QStringLiteral("truncated.mp4"), whole.left(whole.size() * 3 / 10));
            },
            true, ""},
        {"stillImage",
            [] {
                const QString path = Fixtures::instance().path(QStringLiteral("still.png"));
                runFfmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                    QStringLiteral("color=c=red:s=64x48:d=1"), QStringLiteral("-frames:v"), QStringLiteral("1"), path});
                return path;
            },
            true, ""},
        {"audioOnly",
            [] {
                const QString path = Fixtures::instance().path(QStringLiteral("tone.m4a"));
                runFfmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                    QStringLiteral("sine=duration=1"), QStringLiteral("-c:a"), QStringLiteral("aac"), path});
                return path;
            },
            true, ""},
        // Declared sizes beyond the limits are refused before any frame is allocated.
        {"tooWide",
            [] {
                return Fixtures::instance().write(
                    QStringLiteral("wide.y4m"), "YUV4MPEG2 W20000 H16 F25:1 C420jpeg\nFRAME\n" + QByteArray(64, '\0'));
            },
            true, "20000x16"},
        {"tooManyPixels",
            [] {
                return Fixtures::instance().write(QStringLiteral("huge.y4m"),
                    "YUV4MPEG2 W16000 H16000 F25:1 C420jpeg\nFRAME\n" + QByteArray(64, '\0'));
            },
            true, "16000x16000"},
    };
}

void PrintTo(const RefusalCase &c, std::ostream *out)
{
    *out << c.name;
}

class FfmpegVideoSourceRefusal : public ::testing::TestWithParam<RefusalCase> { };

TEST_P(FfmpegVideoSourceRefusal, GivesNoPosterAndSaysSo)
{
    const RefusalCase &c = GetParam();
    const QString path = c.make();
    LogCapture log(writerInfoOn);

    const BundleVideoInspection inspection = FfmpegVideoSource().inspect(path);

    EXPECT_FALSE(inspection.poster.has_value());
    EXPECT_EQ(outcomeName(inspection.posterOutcome), std::string("unavailable"));
    if (c.errorExpected) {
        ASSERT_TRUE(inspection.error.has_value());
        EXPECT_FALSE(inspection.error->isEmpty());
        EXPECT_THAT(inspection.error->toStdString(), HasSubstr(c.errorContains));
    }
    const std::vector<std::string> lines = log.take();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), noPoster(path));
}

INSTANTIATE_TEST_SUITE_P(FfmpegRefusals, FfmpegVideoSourceRefusal, ::testing::ValuesIn(refusalCases()),
    [](const ::testing::TestParamInfo<RefusalCase> &info) { return info.param.name; });

// ---- The fallback ladder ----------------------------------------------------------------

// Index first, frames after, a keyframe every 0.2 s: cutting the file short leaves an
// index that promises frames the file no longer holds.
QString faststartClip()
{
    return Fixtures::instance().clip({.file = QStringLiteral("faststart.mp4"),
        .blueFrom = 0.3,
        .blueTo = 0.7,
        .extra = {"-g", "5", "-movflags", "+faststart"}});
}

TEST(FfmpegVideoSourceLadder, FallsBackToHalfASecondWhenTheMiddleCannotBeShown)
{
    // One keyframe, at the start: reaching the middle means decoding more frames than one attempt may read.
    const int frames = FfmpegVideoSource::maxVideoPacketsPerAttempt * 2 + 100;
    const QByteArray whole = readAll(faststartClip());
    ASSERT_FALSE(whole.isEmpty());
    const struct {
        const char *name;
        QString path;
        double duration;
    } cases[] = {
        {"middle cut off",
            Fixtures::instance().write(QStringLiteral("first-third.mp4"), whole.left(whole.size() * 3 / 10)), 4},
        // Frames until 0.96 s, then none until 4 s; the middle of the 6 s is 3 s.
        {"no frame near the middle",
            Fixtures::instance().clip(silent("wide-gap.mp4", 3, 0.3, 0.7,
                {"-vf", "setpts='if(gte(N,25),PTS+3/TB,PTS)'", "-fps_mode", "passthrough"})),
            6},
        {"middle beyond the reading budget",
            Fixtures::instance().clip(
                sized(silent("one-keyframe.mp4", frames / 25.0, 0.3, 0.7, onlyFirstKeyframe(frames)), 160, 120)),
            0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        LogCapture log(writerInfoOn);
        const BundleVideoInspection inspection = FfmpegVideoSource().inspect(c.path);
        EXPECT_FALSE(inspection.error.has_value());
        if (c.duration > 0)
            EXPECT_NEAR(inspection.durationSeconds, c.duration, 0.1);
        EXPECT_EQ(outcomeName(inspection.posterOutcome), std::string("fallback"));
        ASSERT_TRUE(inspection.poster.has_value());
        EXPECT_EQ(colourAt(*inspection.poster), "blue") << "the fallback poster is not from 0.5 s";
        EXPECT_THAT(log.take(), ElementsAre(rungOneFailed(c.path)));
    }
}

TEST(FfmpegVideoSourceLadder, ReportsBothFailuresWhenNoFrameSurvives)
{
    if (!hasH264())
        GTEST_SKIP() << "MPEG-4 part 2 in MP4 only gets its frame size from its frames";
    const QByteArray whole = readAll(faststartClip());
    const std::optional<qsizetype> mediaStart = endOfBoxHeader(whole, "mdat");
    ASSERT_TRUE(mediaStart.has_value());
    const QString path = Fixtures::instance().write(QStringLiteral("header-only.mp4"), whole.left(*mediaStart + 16));
    LogCapture log(writerInfoOn);

    const BundleVideoInspection inspection = FfmpegVideoSource().inspect(path);

    // The header still describes the video; only its frames are gone.
    EXPECT_FALSE(inspection.error.has_value());
    EXPECT_EQ(inspection.width, 320);
    EXPECT_EQ(inspection.height, 240);
    EXPECT_EQ(inspection.videoCodec, commonVideoCodecName());
    EXPECT_FALSE(inspection.poster.has_value());
    EXPECT_EQ(outcomeName(inspection.posterOutcome), std::string("unavailable"));
    EXPECT_THAT(log.take(), ElementsAre(rungOneFailed(path), noPoster(path)));
}

// ---- Concurrency -------------------------------------------------------------------------

TEST(FfmpegVideoSourceThreads, ConcurrentInspectionsAgreeWithSequentialOnes)
{
    Fixtures &fixtures = Fixtures::instance();
    const QByteArray faststart = readAll(faststartClip());
    const std::vector<QString> files {
        fixtures.clip({.file = QStringLiteral("av.mp4")}),
        fixtures.clip(rawStreamClip()),
        rotatedClip(90),
        fixtures.write(QStringLiteral("first-third.mp4"), faststart.left(faststart.size() * 3 / 10)),
        fixtures.write(QStringLiteral("noise.mp4"), pseudoRandomBytes(200000)),
        fixtures.path(QStringLiteral("absent.mp4")),
    };
    const FfmpegVideoSource source;
    std::vector<std::string> expected;
    for (const QString &file : files)
        expected.push_back(describe(source.inspect(file)));

    constexpr int threadCount = 4;
    std::vector<std::vector<std::string>> seen(threadCount, std::vector<std::string>(files.size()));
    std::latch start(threadCount);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                start.arrive_and_wait();
                // Each thread walks the files from a different place, so different files overlap.
                for (size_t i = 0; i < files.size(); ++i) {
                    const size_t file = (i + size_t(t)) % files.size();
                    seen[t][file] = describe(source.inspect(files[file]));
                }
            });
        }
    }
    for (int t = 0; t < threadCount; ++t)
        EXPECT_EQ(seen[t], expected) << "thread " << t;
}

} // namespace
} // namespace sorvane
