#include "app/VipsSlideDecoding.h"

#include "codecs/VipsStillDecoder.h"
#include "views/SlideImageDecoder.h"

#include <QImage>

namespace sorvane {

void VipsSlideDecoding::install()
{
    SlideImageDecoder::setOtherFormats([](const SlideDecodeRequest &request) -> std::optional<SlideDecodeResult> {
        if (!VipsStillDecoder::handles(request.path))
            return std::nullopt;
        const VipsStill still = VipsStillDecoder::decode(request.path, [&request](QSize upright) {
            return SlideImageDecoder::decodedSize(upright, request.target, request.scaling);
        });
        SlideDecodeResult result;
        result.sourceSize = still.sourceSize;
        result.error = still.error;
        if (still.error.isEmpty()) {
            const QSize size = still.size;
            result.image = QImage(reinterpret_cast<const uchar *>(still.rgba.constData()), size.width(), size.height(),
                qsizetype(size.width()) * 4, QImage::Format_RGBA8888)
                               .copy();
        }
        return result;
    });
}

} // namespace sorvane
