#include "views/SlideImageDecoder.h"

#include "views/ImageFilterEffect.h"

#include <QByteArrayList>
#include <QFile>
#include <QImageReader>

#include <algorithm>

namespace sorvane {

namespace {

const char *const kTooLarge = "image is too large to show";

QString readerError(const QImageReader &reader)
{
    const QString error = reader.errorString();
    return error.isEmpty() ? QStringLiteral("image could not be decoded") : error;
}

// The formats slides come in. Anything else is refused even when a plugin could read it: with
// the format taken from the content, any file could otherwise reach any decoder (SVG, TGA, XPM...).
bool isSlideFormat(const QByteArray &format)
{
    static const QByteArrayList formats {"jpeg", "png", "gif", "webp", "tiff", "bmp", "heif", "heic", "avif", "jxl"};
    return formats.contains(format);
}

// libjpeg decodes progressive and multi-scan files by holding every DCT coefficient of the picture
// (128 bytes per 8 x 8 block of each component) outside Qt's allocation limit, however small the
// output: 600 bytes claiming 16384 x 16384 would take 800 MB. These are the bytes it would hold:
// 0 when the file streams (one interleaved sequential scan), the most it could need for `size`
// when the header cannot be followed.
qint64 jpegCoefficientBytes(const QString &path, QSize size)
{
    const qint64 unknown = qint64(size.width() + 15) * (size.height() + 15) * 2 * 10; // 10 full components
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.read(2) != QByteArray("\xFF\xD8", 2))
        return unknown;

    QByteArray frame;
    bool progressive = false;
    // Bounded, so a header of endless segments or junk costs a moment, not a minute.
    for (int segment = 0; segment < 1024 && file.pos() < 16 * 1024 * 1024; ++segment) {
        char byte = 0;
        while (file.getChar(&byte) && uchar(byte) != 0xFF) { } // extraneous bytes, as libjpeg skips them
        while (file.getChar(&byte) && uchar(byte) == 0xFF) { } // fill bytes
        const uchar marker = uchar(byte);
        if (file.atEnd() || marker == 0xD9)
            return unknown;
        if ((marker >= 0xD0 && marker <= 0xD7) || marker == 0x01)
            continue; // no length
        const QByteArray lengthBytes = file.read(2);
        if (lengthBytes.size() != 2)
            return unknown;
        const int length = (uchar(lengthBytes[0]) << 8) | uchar(lengthBytes[1]);
        if (length < 2)
            return unknown;
        const qint64 next = file.pos() + length - 2;

        const bool isFrame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (isFrame) {
            // precision, height, width, component count, then id, sampling, table per component
            frame = file.read(length - 2);
            if (frame.size() < 6 || frame.size() < 6 + 3 * uchar(frame[5]) || uchar(frame[5]) == 0)
                return unknown;
            progressive = marker == 0xC2 || marker == 0xC6 || marker == 0xCA || marker == 0xCE;
        } else if (marker == 0xDA) {
            char scanComponents = 0;
            if (frame.isEmpty() || !file.getChar(&scanComponents))
                return unknown;
            const int components = uchar(frame[5]);
            if (!progressive && uchar(scanComponents) >= components)
                return 0;
            const int height = (uchar(frame[1]) << 8) | uchar(frame[2]);
            const int width = (uchar(frame[3]) << 8) | uchar(frame[4]);
            int maxH = 1, maxV = 1;
            for (int c = 0; c < components; ++c) {
                const int h = uchar(frame[7 + 3 * c]) >> 4, v = uchar(frame[7 + 3 * c]) & 0xF;
                if (h < 1 || h > 4 || v < 1 || v > 4)
                    return unknown;
                maxH = std::max(maxH, h);
                maxV = std::max(maxV, v);
            }
            // Per component, its blocks rounded up to whole MCUs, as libjpeg allocates them.
            const auto roundUp
                = [](qint64 value, int multiple) { return (value + multiple - 1) / multiple * multiple; };
            qint64 blocks = 0;
            for (int c = 0; c < components; ++c) {
                const int h = uchar(frame[7 + 3 * c]) >> 4, v = uchar(frame[7 + 3 * c]) & 0xF;
                const qint64 across = (qint64(width) * h + 8 * maxH - 1) / (8 * maxH);
                const qint64 down = (qint64(height) * v + 8 * maxV - 1) / (8 * maxV);
                blocks += roundUp(across, h) * roundUp(down, v);
            }
            return blocks * 64 * 2;
        }
        if (!file.seek(next))
            return unknown;
    }
    return unknown;
}

SlideImageDecoder::OtherFormats &otherFormats()
{
    static SlideImageDecoder::OtherFormats decoder;
    return decoder;
}

// The filter and the memory check every decoded picture gets, whoever decoded it.
SlideDecodeResult finished(SlideDecodeResult result, ImageFilter filter)
{
    if (!result.ok())
        return result;
    ImageFilterEffect::apply(result.image, filter);
    if (result.image.isNull())
        result.error = QStringLiteral("not enough memory to show the image");
    return result;
}

} // namespace

void SlideImageDecoder::setOtherFormats(OtherFormats decoder)
{
    otherFormats() = std::move(decoder);
}

QSize SlideImageDecoder::decodedSize(QSize source, QSize target, ImageScalingMode scaling)
{
    if (scaling == ImageScalingMode::actualSize || source.width() <= 0 || source.height() <= 0)
        return source;
    const bool byWidth = target.width() > 0;
    const bool byHeight = target.height() > 0;
    if (!byWidth && !byHeight)
        return source;

    const double widthFactor = byWidth ? double(target.width()) / source.width() : 0.0;
    const double heightFactor = byHeight ? double(target.height()) / source.height() : 0.0;
    double factor = byWidth ? widthFactor : heightFactor;
    if (byWidth && byHeight) {
        factor = scaling == ImageScalingMode::fitToScreen ? std::min(widthFactor, heightFactor)
                                                          : std::max(widthFactor, heightFactor);
    }
    // Enlarging adds no detail, only memory; the view scales up on the GPU when it must.
    if (factor >= 1.0)
        return source;
    return QSize(std::max(1, qRound(source.width() * factor)), std::max(1, qRound(source.height() * factor)));
}

SlideDecodeResult SlideImageDecoder::decode(const SlideDecodeRequest &request)
{
    SlideDecodeResult result;

    QImageReader reader(request.path);
    // Files on other people's sticks are often misnamed: trust the bytes, not the suffix.
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    // Qt reads 0 as no limit at all; an unset or nonsense limit gets the default instead.
    const int allocationLimitMiB = request.allocationLimitMiB > 0 ? request.allocationLimitMiB : kAllocationLimitMiB;
    reader.setAllocationLimit(allocationLimitMiB);

    // The header's size, before orientation. QSize() when the header is unreadable (read()
    // then reports why) or the format does not tell (the allocation limit still holds).
    const QSize stored = reader.size();
    const bool sizeKnown = stored != QSize();
    const QByteArray format = reader.format();
    if (format.isEmpty() && otherFormats()) {
        if (std::optional<SlideDecodeResult> other = otherFormats()(request))
            return finished(std::move(*other), request.filter);
    }
    if (!format.isEmpty() && !isSlideFormat(format)) {
        result.error = QStringLiteral("unsupported image format: %1").arg(QString::fromLatin1(format));
        return result;
    }
    if (sizeKnown) {
        if (stored.width() <= 0 || stored.height() <= 0) {
            result.error = QStringLiteral("image has no pixels");
            return result;
        }
        // Refused from the header alone: a few hundred bytes can claim gigabytes of pixels.
        const qint64 pixels = qint64(stored.width()) * stored.height();
        if (pixels > kMaxSourcePixels) {
            result.error = QString::fromLatin1(kTooLarge);
            return result;
        }
        const qint64 limitBytes = qint64(allocationLimitMiB) * 1024 * 1024;
        if (format == "jpeg" && jpegCoefficientBytes(request.path, stored) > limitBytes) {
            result.error = QString::fromLatin1(kTooLarge);
            return result;
        }
    }

    // The scaled size applies before the orientation is, so a quarter turn swaps its sides.
    const bool turnsSideways = reader.transformation() & QImageIOHandler::TransformationRotate90;
    if (sizeKnown) {
        result.sourceSize = turnsSideways ? stored.transposed() : stored;
        const QSize wanted = decodedSize(result.sourceSize, request.target, request.scaling);
        if (wanted != result.sourceSize)
            reader.setScaledSize(turnsSideways ? wanted.transposed() : wanted);
    }

    QImage image;
    if (!reader.read(&image) || image.isNull()) {
        result.error = readerError(reader);
        return result;
    }

    // Unknown ahead, or not what the header promised (a GIF reports its first frame but draws its
    // whole logical screen, which may be far larger): the picture itself then sets the sizes.
    if (!sizeKnown || image.size() != decodedSize(result.sourceSize, request.target, request.scaling)) {
        if (image.width() > result.sourceSize.width() || image.height() > result.sourceSize.height())
            result.sourceSize = image.size();
        if (qint64(result.sourceSize.width()) * result.sourceSize.height() > kMaxSourcePixels) {
            result.error = QString::fromLatin1(kTooLarge);
            return result;
        }
        const QSize wanted = decodedSize(image.size(), request.target, request.scaling);
        if (wanted != image.size())
            image = image.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }

    result.image = std::move(image);
    return finished(std::move(result), request.filter);
}

} // namespace sorvane
