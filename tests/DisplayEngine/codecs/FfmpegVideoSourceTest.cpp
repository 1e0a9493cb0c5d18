#include "codecs/FfmpegVideoSource.h"
#include "support/LogCapture.h"
#include "support/SampleFolder.h"
#include "support/ThreadAgreement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace sorvane {
namespace {

using ::testing::HasSubstr;

// The command making a clip whose colour says when a frame was shown: red, then blue from
// `from` to `to` seconds, then lime. `tail` holds the output options and file; `tone` is the
// seconds of sound, none when 0.
QString command(
    double seconds, double from, double to, const QString &tail, QString size = {}, double tone = 0, bool vp9 = false)
{
    return QStringLiteral("ffmpeg -v error -f lavfi -i \"color=c=red:s=%1:r=25:d=%2,"
                          "drawbox=c=blue:t=fill:enable='between(t,%3,%4)',drawbox=c=lime:t=fill:enable='gt(t,%4)'\" "
                          "%5 %6 %7")
        .arg(size.isEmpty() ? QStringLiteral("320x240") : size)
        .arg(seconds)
        .arg(from)
        .arg(to)
        .arg(tone > 0 ? QStringLiteral("-f lavfi -i sine=frequency=440:duration=%1 -c:a %2")
                            .arg(tone)
                            .arg(vp9 ? "libopus" : "aac")
                      : QString(),
            vp9 ? QStringLiteral("-c:v libvpx-vp9 -deadline realtime -b:v 200k")
                : QStringLiteral("-c:v libx264 -preset veryfast -pix_fmt yuv420p"),
            tail);
}

// One keyframe, at the start: reaching the middle means decoding more frames than one attempt may read.
const int oneKeyframeFrames = FfmpegVideoSource::maxVideoPacketsPerAttempt * 2 + 100;

test::SampleFolder &videos()
{
    const auto cut = [](const char *from, const char *to, int tenths) {
        return QStringLiteral("head -c $(($(stat -c %s %1) * %3 / 10)) %1 > %2").arg(from, to).arg(tenths);
    };
    const auto y4m = [](const char *size, const char *file) {
        return QStringLiteral("printf 'YUV4MPEG2 %1 F25:1 C420jpeg\\nFRAME\\n' > %2 && head -c 64 /dev/zero >> %2")
            .arg(size, file);
    };
    static test::SampleFolder folder({
        {"av.mp4", command(4, 1.5, 2.5, "av.mp4", {}, 4)},
        // Without a telling extension, the brand inside names a QuickTime-family container.
        {"mp4-named.bin", command(4, 1.5, 2.5, "-f mp4 mp4-named.bin", {}, 4)},
        {"mov-named.bin", command(4, 1.5, 2.5, "-f mov mov-named.bin", {}, 4)},
        // Shorter than the fallback time: only half the duration lands inside it.
        {"short.mp4", command(0.4, 0.12, 0.28, "short.mp4")},
        // No duration anywhere: the first attempt is at 0.5 s, inside the band; half of 2 s would be lime.
        {"raw.es", command(2, 0.3, 0.7, "-f h264 raw.es")},
        // Pixels twice as wide as tall are shown stretched.
        {"anamorphic.mp4", command(2, 0.5, 1.5, "-vf setsar=2/1 anamorphic.mp4")},
        {"uhd.mp4", command(1, 0.3, 0.7, "uhd.mp4", "3840x2160")},
        {"uhd-tall.mp4", command(1, 0.3, 0.7, "uhd-tall.mp4", "1080x3840")},
        // No frame is shown from 1.88 s to 2.92 s: the one before the gap is nearer to 2 s than
        // the tolerance, the one after is not. The frames after the gap are lime.
        {"gap.mp4", command(3, 1, 1.9, "-vf \"setpts='if(gte(N,48),PTS+1/TB,PTS)'\" -fps_mode passthrough gap.mp4")},
        // Half the file's duration lies past the last frame, which then stands in; it is blue, half the video red.
        {"long-audio.mp4", command(2, 1.5, 2.5, "long-audio.mp4", {}, 6)},
        {"clip.webm", command(2, 0.5, 1.5, "clip.webm", {}, 2, true)},
        // A blue frame with a yellow marker in its top-left quarter, stored with display rotations.
        {"marker.mp4",
            "ffmpeg -v error -f lavfi -i color=c=blue:s=320x240:r=25:d=1,drawbox=w=80:h=60:c=yellow:t=fill "
            "-c:v libx264 -pix_fmt yuv420p marker.mp4"},
        {"rotated-90.mp4", "ffmpeg -v error -i marker.mp4 -c copy -metadata:s:v:0 rotate=90 rotated-90.mp4"},
        {"rotated-180.mp4", "ffmpeg -v error -i marker.mp4 -c copy -metadata:s:v:0 rotate=180 rotated-180.mp4"},
        {"rotated-270.mp4", "ffmpeg -v error -i marker.mp4 -c copy -metadata:s:v:0 rotate=270 rotated-270.mp4"},
        // Index first, frames after, a keyframe every 0.2 s: cutting the file short leaves an
        // index that promises frames the file no longer holds.
        {"faststart.mp4", command(4, 0.3, 0.7, "-g 5 -movflags +faststart faststart.mp4", {}, 4)},
        {"first-third.mp4", cut("faststart.mp4", "first-third.mp4", 3)},
        // The header up to 16 bytes into the media data: the frames are gone.
        {"header-only.mp4",
            "head -c $(($(grep -obUa mdat faststart.mp4 | head -1 | cut -d: -f1) + 20)) faststart.mp4 "
            "> header-only.mp4"},
        // Frames until 0.96 s, then none until 4 s; the middle of the 6 s is 3 s.
        {"wide-gap.mp4",
            command(3, 0.3, 0.7, "-vf \"setpts='if(gte(N,25),PTS+3/TB,PTS)'\" -fps_mode passthrough wide-gap.mp4")},
        {"one-keyframe.mp4",
            command(oneKeyframeFrames / 25.0, 0.3, 0.7,
                QStringLiteral("-g %1 -keyint_min %1 -sc_threshold 0 one-keyframe.mp4").arg(oneKeyframeFrames * 2),
                "160x120")},
        {"empty.mp4", ": > empty.mp4"},
        {"noise.mp4", "openssl enc -aes-128-ctr -K 0 -iv 0 -in /dev/zero 2>/dev/null | head -c 200000 > noise.mp4"},
        // The index sits at the end of an ordinary MP4, so the first 30% holds none.
        {"truncated.mp4", cut("av.mp4", "truncated.mp4", 3)},
        {"tone.m4a", "ffmpeg -v error -f lavfi -i sine=duration=1 -c:a aac tone.m4a"},
        // Declared sizes beyond the limits are refused before any frame is allocated.
        {"wide.y4m", y4m("W20000 H16", "wide.y4m")},
        {"huge.y4m", y4m("W16000 H16000", "huge.y4m")},
    });
    return folder;
}

// Names the fixture colour at a point given as fractions of the size, allowing for lossy coding.
// The points lie inside flat areas of one colour.
std::string colourAt(const BundleRasterImage &image, double fx, double fy)
{
    const qsizetype pixel = qsizetype(fy * image.height) * image.width + qsizetype(fx * image.width);
    std::array<int, 3> shown {};
    for (int c = 0; c < 3; ++c)
        shown[c] = quint8(image.rgb[pixel * 3 + c]);
    const std::pair<const char *, std::array<int, 3>> named[] {
        {"red", {255, 0, 0}}, {"lime", {0, 255, 0}}, {"blue", {0, 0, 255}}, {"yellow", {255, 255, 0}}};
    for (const auto &[name, rgb] : named) {
        if (std::abs(shown[0] - rgb[0]) < 48 && std::abs(shown[1] - rgb[1]) < 48 && std::abs(shown[2] - rgb[2]) < 48)
            return name;
    }
    return "other";
}

// What an inspection says as one line: the poster by its size and colours (the centre's, then
// the corners' when they differ), or, with `hash`, by its pixels.
std::string describe(const BundleVideoInspection &inspection, bool hash = false)
{
    const char *outcomes[] = {"firstAttempt", "fallback", "unavailable"};
    QString text = QStringLiteral("%1x%2 %3 %4 %5 %6s, %7")
                       .arg(inspection.width)
                       .arg(inspection.height)
                       .arg(inspection.container, inspection.videoCodec,
                           inspection.audioCodec.value_or(inspection.hasAudio ? "?" : "-"))
                       .arg(inspection.durationSeconds, 0, 'f', 1)
                       .arg(outcomes[int(inspection.posterOutcome)]);
    if (inspection.error)
        text += QStringLiteral(", error");
    if (!inspection.poster)
        return text.toStdString();
    const BundleRasterImage &poster = *inspection.poster;
    const std::string line = text.toStdString() + " " + std::to_string(poster.width) + "x"
        + std::to_string(poster.height) + " " + colourAt(poster, 0.5, 0.5);
    if (hash)
        return line + " " + QCryptographicHash::hash(poster.rgb, QCryptographicHash::Sha1).toHex().toStdString();
    const std::string centre = colourAt(poster, 0.5, 0.5);
    std::string corners;
    bool uniform = true;
    for (const auto &[x, y] : {std::pair {0.1, 0.1}, {0.9, 0.1}, {0.1, 0.9}, {0.9, 0.9}}) {
        corners += " " + colourAt(poster, x, y);
        uniform = uniform && corners.ends_with(" " + centre);
    }
    return uniform ? line : line + ";" + corners;
}

std::string rungOneFailed(const QString &path)
{
    return test::logLine("sorvane.writer", "info", "Poster rung 1 failed for " + path + "; retrying early.");
}

std::string noPoster(const QString &path)
{
    return test::logLine(
        "sorvane.writer", "warning", "No poster frame available for " + path + "; the item will be omitted.");
}

TEST(FfmpegVideoSource, ReadsMetadataAndTakesThePosterFromTheMiddleOrHalfASecondIn)
{
    const std::pair<const char *, const char *> cases[] = {
        {"av.mp4", "320x240 mp4 h264 aac 4.0s, firstAttempt 320x240 blue"},
        {"mp4-named.bin", "320x240 mp4 h264 aac 4.0s, firstAttempt 320x240 blue"},
        {"mov-named.bin", "320x240 mov h264 aac 4.0s, firstAttempt 320x240 blue"},
        {"short.mp4", "320x240 mp4 h264 - 0.4s, firstAttempt 320x240 blue"},
        {"raw.es", "320x240 h264 h264 - 0.0s, firstAttempt 320x240 blue"},
        {"anamorphic.mp4", "640x240 mp4 h264 - 2.0s, firstAttempt 640x240 blue"},
        // Posters keep their long edge within 2160 pixels.
        {"uhd.mp4", "3840x2160 mp4 h264 - 1.0s, firstAttempt 2160x1215 blue"},
        {"uhd-tall.mp4", "1080x3840 mp4 h264 - 1.0s, firstAttempt 608x2160 blue"},
        {"gap.mp4", "320x240 mp4 h264 - 4.0s, firstAttempt 320x240 blue"},
        {"long-audio.mp4", "320x240 mp4 h264 aac 6.0s, firstAttempt 320x240 blue"},
        {"clip.webm", "320x240 matroska vp9 opus 2.0s, firstAttempt 320x240 blue"},
        // The tag is a counter-clockwise display turn: ffmpeg's own player shows the "rotate=90"
        // clip with the marker bottom-left. "rotate=270" is what a phone filming upright writes.
        {"rotated-90.mp4", "240x320 mp4 h264 - 1.0s, firstAttempt 240x320 blue; blue blue yellow blue"},
        {"rotated-180.mp4", "320x240 mp4 h264 - 1.0s, firstAttempt 320x240 blue; blue blue blue yellow"},
        {"rotated-270.mp4", "240x320 mp4 h264 - 1.0s, firstAttempt 240x320 blue; blue yellow blue blue"},
        // The middle is cut off, has no frame near it, or lies beyond the reading budget: the
        // poster comes from 0.5 s, inside the blue band.
        {"first-third.mp4", "320x240 mp4 h264 aac 4.0s, fallback 320x240 blue"},
        {"wide-gap.mp4", "320x240 mp4 h264 - 6.0s, fallback 320x240 blue"},
        {"one-keyframe.mp4", "160x120 mp4 h264 - 52.0s, fallback 160x120 blue"},
        // The header still describes the video; only its frames are gone.
        {"header-only.mp4", "320x240 mp4 h264 aac 4.0s, unavailable"},
    };
    for (const auto &[file, expected] : cases) {
        const QString path = videos().path(QString::fromUtf8(file));
        test::LogCapture log(QStringLiteral("sorvane.writer.info=true"));
        const BundleVideoInspection inspection = FfmpegVideoSource().inspect(path);
        EXPECT_EQ(describe(inspection), expected) << file;
        std::vector<std::string> lines;
        if (inspection.posterOutcome != BundlePosterOutcome::firstAttempt)
            lines.push_back(rungOneFailed(path));
        if (inspection.posterOutcome == BundlePosterOutcome::unavailable)
            lines.push_back(noPoster(path));
        EXPECT_EQ(log.take(), lines) << file;
    }
}

TEST(FfmpegVideoSource, FilesThatAreNotUsableVideosGiveNoPosterAndSaySo)
{
    const std::pair<const char *, const char *> cases[] = {
        {"absent.mp4", "No such file"},
        {"empty.mp4", ""},
        {"noise.mp4", nullptr}, // may open, but must yield no poster
        {"truncated.mp4", ""},
        {"tone.m4a", ""},
        {"wide.y4m", "20000x16"},
        {"huge.y4m", "16000x16000"},
    };
    for (const auto &[file, error] : cases) {
        SCOPED_TRACE(file);
        const QString path = videos().path(QString::fromUtf8(file));
        test::LogCapture log(QStringLiteral("sorvane.writer.info=true"));
        const BundleVideoInspection inspection = FfmpegVideoSource().inspect(path);
        EXPECT_FALSE(inspection.poster.has_value());
        EXPECT_EQ(inspection.posterOutcome, BundlePosterOutcome::unavailable);
        if (error) {
            ASSERT_TRUE(inspection.error.has_value());
            EXPECT_FALSE(inspection.error->isEmpty());
            EXPECT_THAT(inspection.error->toStdString(), HasSubstr(error));
        }
        const std::vector<std::string> lines = log.take();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), noPoster(path));
    }
}

TEST(FfmpegVideoSource, ConcurrentInspectionsAgreeWithSequentialOnes)
{
    std::vector<QString> files;
    for (const char *file : {"av.mp4", "raw.es", "rotated-90.mp4", "first-third.mp4", "noise.mp4", "absent.mp4"})
        files.push_back(videos().path(QString::fromUtf8(file)));
    const FfmpegVideoSource source;
    const test::LogCapture quiet;
    test::expectSameAnswersOnThreads(files.size(), [&](size_t i) { return describe(source.inspect(files[i]), true); });
}

} // namespace
} // namespace sorvane
