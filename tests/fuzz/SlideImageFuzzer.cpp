// Fuzz target for the slide decoder the player draws with: every input is the
// file of a slide on a stranger's stick, decoded at the sizes the player asks
// for, with the player's allocation limit.
//
// A decode either fails with a reason or yields a picture no larger than its
// source, within the area asked for when the slide is fitted, and within the
// memory limit; the source it reports is within the pixel cap.

#include "FuzzSupport.h"
#include "views/SlideImageDecoder.h"

#include <QDir>
#include <QTemporaryDir>

using namespace sorvane;

namespace {

struct Ask {
    QSize target;
    ImageScalingMode scaling;
    ImageFilter filter;
};

// A full-HD screen, a wall tile, a width-only request and the full picture.
const Ask asks[] = {
    {{1920, 1080}, ImageScalingMode::fitToScreen, ImageFilter::none},
    {{256, 256}, ImageScalingMode::fillScreen, ImageFilter::sepia},
    {{320, 0}, ImageScalingMode::fitToScreen, ImageFilter::blackAndWhite},
    {{0, 0}, ImageScalingMode::actualSize, ImageFilter::vintage},
};

void check(const SlideDecodeResult &result, const Ask &ask, const QByteArray &input)
{
    FUZZ_CHECK(result.error.isEmpty() == !result.image.isNull(), result.error.toUtf8());
    if (!result.ok())
        return;
    const QSize source = result.sourceSize;
    const QSize image = result.image.size();
    FUZZ_CHECK(source.isValid() && qint64(source.width()) * source.height() <= SlideImageDecoder::kMaxSourcePixels);
    FUZZ_CHECK(image.width() >= 1 && image.height() >= 1);
    FUZZ_CHECK(image.width() <= source.width() && image.height() <= source.height(), input.left(64).toHex());
    if (ask.scaling == ImageScalingMode::fitToScreen) {
        FUZZ_CHECK(ask.target.width() <= 0 || image.width() <= ask.target.width(), input.left(64).toHex());
        FUZZ_CHECK(ask.target.height() <= 0 || image.height() <= ask.target.height(), input.left(64).toHex());
    }
    FUZZ_CHECK(result.image.sizeInBytes() <= qint64(SlideImageDecoder::kAllocationLimitMiB) * 1024 * 1024);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::quietMessages();
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvane-fuzz-slide-XXXXXX"));
    // Misnamed on purpose: the decoder must go by the bytes.
    const QString path = folder.filePath(QStringLiteral("slide.jpg"));
    const QByteArray input = fuzz::bytes(data, size);
    fuzz::writeFile(path, input);
    for (const Ask &ask : asks)
        check(SlideImageDecoder::decode({path, ask.target, ask.scaling, ask.filter}), ask, input);
    return 0;
}
