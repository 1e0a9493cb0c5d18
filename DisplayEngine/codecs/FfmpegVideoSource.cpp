#include "codecs/FfmpegVideoSource.h"

#include "EngineLog.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace sorvane {

namespace {

struct FormatCloser {
    void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
};
struct CodecFreer {
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
};
struct FrameFreer {
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
struct PacketFreer {
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};
struct ScalerFreer {
    void operator()(SwsContext *scaler) const { sws_freeContext(scaler); }
};

using FormatPtr = std::unique_ptr<AVFormatContext, FormatCloser>;
using CodecPtr = std::unique_ptr<AVCodecContext, CodecFreer>;
using FramePtr = std::unique_ptr<AVFrame, FrameFreer>;
using PacketPtr = std::unique_ptr<AVPacket, PacketFreer>;
using ScalerPtr = std::unique_ptr<SwsContext, ScalerFreer>;

QString errorText(int code)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    if (av_strerror(code, text, sizeof text) < 0)
        return QStringLiteral("FFmpeg error %1").arg(code);
    return QString::fromUtf8(text);
}

bool sizeAcceptable(int width, int height)
{
    return width > 0 && height > 0 && width <= FfmpegVideoSource::maxSide && height <= FfmpegVideoSource::maxSide
        && qint64(width) * height <= FfmpegVideoSource::maxPixels;
}

QString unusableSize(int width, int height)
{
    return QStringLiteral("Video frame size %1x%2 is outside the supported range").arg(width).arg(height);
}

// The first of the demuxer's names. The QuickTime demuxer serves both MP4 and
// QuickTime files under one name, so those are told apart by the extension the
// file was given and, failing that, by the brand the file declares.
QString containerName(const AVFormatContext &format, const QString &path)
{
    const QByteArray names(format.iformat->name);
    const QString first = QString::fromLatin1(names.split(',').constFirst());
    if (!names.startsWith("mov,mp4"))
        return first;
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("mp4") || suffix == QLatin1String("m4v"))
        return QStringLiteral("mp4");
    if (suffix == QLatin1String("mov") || suffix == QLatin1String("qt"))
        return QStringLiteral("mov");
    const AVDictionaryEntry *brand = av_dict_get(format.metadata, "major_brand", nullptr, 0);
    if (brand && std::strncmp(brand->value, "qt", 2) != 0)
        return QStringLiteral("mp4");
    return QStringLiteral("mov");
}

// Still-image readers hand out a one-frame "video"; a picture is not a video.
bool isStillImageFormat(const AVFormatContext &format)
{
    const QByteArray name(format.iformat->name);
    return name == "image2" || name.endsWith("_pipe");
}

// Clockwise quarter turns that make the stored frames upright.
int quarterTurnsClockwise(const AVStream &stream)
{
    size_t size = 0;
    const uint8_t *data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!data || size < 9 * sizeof(int32_t))
        return 0;
    int32_t matrix[9];
    std::memcpy(matrix, data, sizeof matrix);
    // The matrix's angle is the counter-clockwise turn it applies to the frame.
    const double counterClockwise = av_display_rotation_get(matrix);
    if (!std::isfinite(counterClockwise))
        return 0;
    const long turns = std::lround(-counterClockwise / 90.0);
    return int(((turns % 4) + 4) % 4);
}

// Pixel aspect ratios beyond 16:1 either way are treated as square: they are surely
// bogus and would otherwise make huge presentation sizes.
AVRational saneAspect(AVRational aspect)
{
    if (aspect.num <= 0 || aspect.den <= 0)
        return {1, 1};
    const double ratio = av_q2d(aspect);
    if (ratio < 1.0 / 16 || ratio > 16)
        return {1, 1};
    return aspect;
}

// Width as shown: non-square pixels stretch or squeeze the width, as players do.
int presentationWidth(int width, AVRational aspect)
{
    return std::max(1, int(std::lround(double(width) * aspect.num / aspect.den)));
}

// Seconds from the stream's start, or nothing when the frame carries no time.
std::optional<double> frameSeconds(const AVFrame &frame, const AVStream &stream)
{
    int64_t timestamp = frame.best_effort_timestamp;
    if (timestamp == AV_NOPTS_VALUE)
        timestamp = frame.pts;
    if (timestamp == AV_NOPTS_VALUE)
        return std::nullopt;
    const int64_t start = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
    // In floating point: a hostile file's timestamps may be anywhere in the 64-bit range.
    const double seconds = (double(timestamp) - double(start)) * av_q2d(stream.time_base);
    if (!std::isfinite(seconds))
        return std::nullopt;
    return seconds;
}

struct OpenedVideo {
    FormatPtr format;
    AVStream *stream = nullptr;
    CodecPtr decoder; // null when no decoder exists for the stream's codec
    int quarterTurns = 0;
};

// Converts one decoded frame to upright RGB with the long edge at most posterLongEdge.
std::optional<BundleRasterImage> toRaster(const AVFrame &frame, AVRational aspect, int quarterTurns)
{
    const auto format = AVPixelFormat(frame.format);
    const AVPixFmtDescriptor *descriptor = av_pix_fmt_desc_get(format);
    if (!descriptor || !sws_isSupportedInput(format) || !sizeAcceptable(frame.width, frame.height))
        return std::nullopt;

    int width = presentationWidth(frame.width, saneAspect(aspect));
    int height = frame.height;
    const int longEdge = std::max(width, height);
    if (longEdge > FfmpegVideoSource::posterLongEdge) {
        const double scale = double(FfmpegVideoSource::posterLongEdge) / longEdge;
        // The long side lands exactly on the limit; the short side is rounded.
        if (width >= height) {
            height = std::max(1, int(std::lround(height * scale)));
            width = FfmpegVideoSource::posterLongEdge;
        } else {
            width = std::max(1, int(std::lround(width * scale)));
            height = FfmpegVideoSource::posterLongEdge;
        }
    }

    ScalerPtr scaler(sws_getContext(frame.width, frame.height, format, width, height, AV_PIX_FMT_RGB24,
        SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
    if (!scaler)
        return std::nullopt;
    if (!(descriptor->flags & AV_PIX_FMT_FLAG_RGB) && descriptor->nb_components >= 3) {
        // Untagged video follows the usual convention: HD is BT.709, SD is BT.601.
        int colorspace = frame.colorspace;
        if (colorspace == AVCOL_SPC_UNSPECIFIED || colorspace == AVCOL_SPC_RGB)
            colorspace = frame.height >= 720 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
        const bool fullRange = frame.color_range == AVCOL_RANGE_JPEG || format == AV_PIX_FMT_YUVJ420P
            || format == AV_PIX_FMT_YUVJ422P || format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P
            || format == AV_PIX_FMT_YUVJ411P;
        // A refusal here only costs colour accuracy, so its result does not matter.
        sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(colorspace), fullRange ? 1 : 0,
            sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    }

    // The scaler writes into aligned rows; the packed, turned copy is made afterwards.
    FramePtr rgb(av_frame_alloc());
    if (!rgb)
        return std::nullopt;
    rgb->format = AV_PIX_FMT_RGB24;
    rgb->width = width;
    rgb->height = height;
    if (av_frame_get_buffer(rgb.get(), 0) < 0)
        return std::nullopt;
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rgb->data, rgb->linesize) != height)
        return std::nullopt;

    BundleRasterImage image;
    const bool sideways = quarterTurns % 2 == 1;
    image.width = sideways ? height : width;
    image.height = sideways ? width : height;
    image.rgb = QByteArray(qsizetype(image.width) * image.height * 3, Qt::Uninitialized);
    const uint8_t *source = rgb->data[0];
    const int stride = rgb->linesize[0];
    auto *target = reinterpret_cast<uint8_t *>(image.rgb.data());
    if (quarterTurns == 0) {
        for (int y = 0; y < height; ++y)
            std::memcpy(target + qsizetype(y) * width * 3, source + qsizetype(y) * stride, size_t(width) * 3);
        return image;
    }
    for (int y = 0; y < image.height; ++y) {
        uint8_t *row = target + qsizetype(y) * image.width * 3;
        for (int x = 0; x < image.width; ++x) {
            int sx = x;
            int sy = y;
            if (quarterTurns == 1) { // clockwise: the source's left column becomes the top row
                sx = y;
                sy = height - 1 - x;
            } else if (quarterTurns == 2) {
                sx = width - 1 - x;
                sy = height - 1 - y;
            } else { // counter-clockwise: the source's right column becomes the top row
                sx = width - 1 - y;
                sy = x;
            }
            std::memcpy(row + qsizetype(x) * 3, source + qsizetype(sy) * stride + qsizetype(sx) * 3, 3);
        }
    }
    return image;
}

// Where reading starts after a seek.
enum class ReadStart { nearTarget, fileStart };

// The keyframe at or before the target; failing that, the beginning of the file, which
// raw streams without an index only reach by byte position.
std::optional<ReadStart> seekBefore(AVFormatContext *format, const AVStream &stream, double targetSeconds)
{
    const int64_t start = stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
    // Worked out in floating point and checked, since a hostile file's start and duration can be anything.
    const double target
        = double(start) + targetSeconds * double(stream.time_base.den) / std::max(1, stream.time_base.num);
    if (std::isfinite(target) && std::abs(target) < 0x1p62
        && av_seek_frame(format, stream.index, std::llround(target), AVSEEK_FLAG_BACKWARD) >= 0)
        return ReadStart::nearTarget;
    if (av_seek_frame(format, stream.index, start, AVSEEK_FLAG_BACKWARD) >= 0
        || av_seek_frame(format, -1, 0, AVSEEK_FLAG_BYTE) >= 0)
        return ReadStart::fileStart;
    return std::nullopt;
}

// Decodes forward from the keyframe before the target to the frame shown at the target.
// Reading is bounded, and every failure simply yields no frame.
std::optional<BundleRasterImage> frameAt(OpenedVideo &video, double targetSeconds)
{
    if (!video.decoder)
        return std::nullopt;
    AVFormatContext *format = video.format.get();
    AVStream *stream = video.stream;
    AVCodecContext *decoder = video.decoder.get();

    const std::optional<ReadStart> readStart = seekBefore(format, *stream, targetSeconds);
    if (!readStart)
        return std::nullopt;
    avcodec_flush_buffers(decoder);

    PacketPtr packet(av_packet_alloc());
    FramePtr frame(av_frame_alloc());
    FramePtr previous(av_frame_alloc());
    if (!packet || !frame || !previous)
        return std::nullopt;
    bool havePrevious = false;
    std::optional<double> previousSeconds;
    int framesDecoded = 0;
    const AVRational rate = av_guess_frame_rate(format, stream, nullptr);
    // Frame times are exact only to the time base; a millisecond early still counts as on time.
    constexpr double earliness = 0.001;

    // A frame's time; streams without timestamps, read from the start, are timed by counting frames.
    auto secondsOf = [&](const AVFrame &decoded) -> std::optional<double> {
        if (const std::optional<double> seconds = frameSeconds(decoded, *stream))
            return seconds;
        if (*readStart == ReadStart::fileStart && rate.num > 0 && rate.den > 0)
            return framesDecoded / av_q2d(rate);
        return std::nullopt;
    };
    auto convert = [&](AVFrame &chosen) {
        return toRaster(chosen, av_guess_sample_aspect_ratio(format, stream, &chosen), video.quarterTurns);
    };

    enum class Verdict { more, take, takePrevious, fail };
    auto judge = [&](const std::optional<double> &seconds) {
        if (!seconds) // untimed, but read from near the target: it is the best on offer
            return *readStart == ReadStart::nearTarget ? Verdict::take : Verdict::fail;
        if (*seconds < targetSeconds - earliness)
            return Verdict::more;
        if (*seconds <= targetSeconds + FfmpegVideoSource::posterToleranceSeconds)
            return Verdict::take;
        // The stream jumps past the target: the frame just before may still be close enough.
        if (havePrevious && previousSeconds
            && targetSeconds - *previousSeconds <= FfmpegVideoSource::posterToleranceSeconds)
            return Verdict::takePrevious;
        return Verdict::fail;
    };

    int packets = 0;
    int videoPackets = 0;
    bool draining = false;
    bool ended = false;
    while (!ended) {
        if (!draining) {
            if (++packets > FfmpegVideoSource::maxPacketsPerAttempt)
                return std::nullopt;
            const int read = av_read_frame(format, packet.get());
            if (read == AVERROR(EAGAIN))
                continue;
            if (read < 0) {
                // End of file or a read error: the decoder gives up what it still holds.
                draining = true;
                if (avcodec_send_packet(decoder, nullptr) < 0)
                    break;
            } else {
                const bool ours = packet->stream_index == stream->index;
                if (ours && ++videoPackets > FfmpegVideoSource::maxVideoPacketsPerAttempt) {
                    av_packet_unref(packet.get());
                    return std::nullopt;
                }
                // A packet the decoder refuses is damaged; later keyframes may still decode.
                if (ours)
                    avcodec_send_packet(decoder, packet.get());
                av_packet_unref(packet.get());
                if (!ours)
                    continue;
            }
        }
        while (true) {
            const int received = avcodec_receive_frame(decoder, frame.get());
            if (received == AVERROR(EAGAIN)) {
                // A draining decoder that wants input has nothing more to give.
                ended = draining;
                break;
            }
            if (received < 0) {
                // Drained, or a damaged frame; only while draining is there nothing left to wait for.
                ended = draining || received == AVERROR_EOF;
                break;
            }
            if (!sizeAcceptable(frame->width, frame->height)) {
                av_frame_unref(frame.get());
                continue;
            }
            const std::optional<double> seconds = secondsOf(*frame);
            ++framesDecoded;
            switch (judge(seconds)) {
            case Verdict::take:
                return convert(*frame);
            case Verdict::takePrevious:
                return convert(*previous);
            case Verdict::fail:
                return std::nullopt;
            case Verdict::more:
                previousSeconds = seconds;
                av_frame_unref(previous.get());
                av_frame_move_ref(previous.get(), frame.get());
                havePrevious = true;
                break;
            }
        }
    }
    // The stream ends before the target: its last frame is the nearest there is.
    if (havePrevious)
        return convert(*previous);
    return std::nullopt;
}

// Off unless asked for (--verbose): FFmpeg's parse warnings about a damaged
// file are ours to report, not to print on the user's terminal.
Q_LOGGING_CATEGORY(lcFfmpeg, "sorvane.ffmpeg", QtWarningMsg)

void forwardFfmpegMessage(void *, int level, const char *format, va_list arguments)
{
    if (level > AV_LOG_WARNING || !lcFfmpeg().isDebugEnabled())
        return;
    char line[1024];
    std::vsnprintf(line, sizeof line, format, arguments);
    qCDebug(lcFfmpeg, "%s", QByteArray(line).trimmed().constData());
}

void routeFfmpegLog()
{
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(forwardFfmpegMessage); });
}

} // namespace

BundleVideoInspection FfmpegVideoSource::inspect(const QString &video) const
{
    routeFfmpegLog();
    BundleVideoInspection result;
    const QByteArray name = video.toUtf8();
    auto refuse = [&](QString error) {
        result.error = std::move(error);
        result.posterOutcome = BundlePosterOutcome::unavailable;
        qCWarning(lcWriter, "No poster frame available for %s; the item will be omitted.", name.constData());
        return result;
    };

    OpenedVideo opened;
    AVFormatContext *raw = avformat_alloc_context();
    if (!raw)
        return refuse(errorText(AVERROR(ENOMEM)));
    raw->probesize = probeBytes;
    raw->max_analyze_duration = analyzeMicroseconds;
    // Local files only: a playlist or reference file must not reach out to the network.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    // The explicit protocol keeps a name such as "http:x.mp4" from being read as a URL.
    const QByteArray url = "file:" + QFile::encodeName(video);
    const int openCode = avformat_open_input(&raw, url.constData(), nullptr, &options);
    av_dict_free(&options);
    if (openCode < 0) // the library has freed the context already
        return refuse(errorText(openCode));
    opened.format.reset(raw);
    AVFormatContext *format = raw;

    // Refused before stream discovery decodes anything: the container's word on the size is enough.
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        const AVCodecParameters *declared = format->streams[i]->codecpar;
        if (declared->codec_type == AVMEDIA_TYPE_VIDEO && (declared->width > 0 || declared->height > 0)
            && !sizeAcceptable(declared->width, declared->height))
            return refuse(unusableSize(declared->width, declared->height));
    }
    // Stream discovery decodes a few frames of its own; they get the same size limit.
    std::vector<AVDictionary *> discoveryOptions(format->nb_streams, nullptr);
    for (AVDictionary *&streamOptions : discoveryOptions)
        av_dict_set_int(&streamOptions, "max_pixels", maxPixels, 0);
    const int discovered = avformat_find_stream_info(format, discoveryOptions.data());
    for (AVDictionary *&streamOptions : discoveryOptions)
        av_dict_free(&streamOptions);
    if (discovered < 0)
        return refuse(errorText(discovered));

    const AVCodec *codec = nullptr;
    const int videoIndex = av_find_best_stream(format, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (videoIndex < 0)
        return refuse(errorText(videoIndex));
    AVStream *stream = format->streams[videoIndex];
    if (isStillImageFormat(*format) || (stream->disposition & AV_DISPOSITION_ATTACHED_PIC))
        return refuse(errorText(AVERROR_STREAM_NOT_FOUND));
    opened.stream = stream;

    const AVCodecParameters *parameters = stream->codecpar;
    if (!sizeAcceptable(parameters->width, parameters->height))
        return refuse(unusableSize(parameters->width, parameters->height));

    result.container = containerName(*format, video);
    result.videoCodec = QString::fromLatin1(avcodec_get_name(parameters->codec_id));
    const int audioIndex = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, videoIndex, nullptr, 0);
    if (audioIndex >= 0) {
        result.hasAudio = true;
        result.audioCodec = QString::fromLatin1(avcodec_get_name(format->streams[audioIndex]->codecpar->codec_id));
    }

    opened.quarterTurns = quarterTurnsClockwise(*stream);
    const int shownWidth
        = presentationWidth(parameters->width, saneAspect(av_guess_sample_aspect_ratio(format, stream, nullptr)));
    const bool sideways = opened.quarterTurns % 2 == 1;
    result.width = sideways ? parameters->height : shownWidth;
    result.height = sideways ? shownWidth : parameters->height;

    double duration = 0;
    if (format->duration != AV_NOPTS_VALUE && format->duration > 0)
        duration = double(format->duration) / AV_TIME_BASE;
    else if (stream->duration != AV_NOPTS_VALUE && stream->duration > 0)
        duration = double(stream->duration) * av_q2d(stream->time_base);
    result.durationSeconds = std::isfinite(duration) && duration > 0 ? duration : 0;

    // No decoder leaves the metadata standing; the poster attempts then fail as usual.
    if (codec) {
        CodecPtr decoder(avcodec_alloc_context3(codec));
        if (decoder && avcodec_parameters_to_context(decoder.get(), parameters) >= 0) {
            decoder->pkt_timebase = stream->time_base;
            decoder->max_pixels = maxPixels;
            // Several files are inspected at once; a couple of threads each is plenty.
            decoder->thread_count = 2;
            if (avcodec_open2(decoder.get(), codec, nullptr) >= 0)
                opened.decoder = std::move(decoder);
        }
    }

    const double firstTarget = result.durationSeconds > 0 ? result.durationSeconds / 2 : 0.5;
    result.poster = frameAt(opened, firstTarget);
    if (result.poster) {
        result.posterOutcome = BundlePosterOutcome::firstAttempt;
        return result;
    }
    qCInfo(lcWriter, "Poster rung 1 failed for %s; retrying early.", name.constData());
    result.poster = frameAt(opened, 0.5);
    if (result.poster) {
        result.posterOutcome = BundlePosterOutcome::fallback;
        return result;
    }
    result.posterOutcome = BundlePosterOutcome::unavailable;
    qCWarning(lcWriter, "No poster frame available for %s; the item will be omitted.", name.constData());
    return result;
}

} // namespace sorvane
