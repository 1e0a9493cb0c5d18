#include "app/VipsSlideDecoding.h"

#include "codecs/VipsStillDecoder.h"
#include "core/SlideshowLog.h"
#include "media/ForeignStillFormat.h"
#include "views/SlideImageDecoder.h"

#include <QCoreApplication>
#include <QImage>
#include <QLibrary>

namespace sorvane {

namespace {

// The entry points of the libvips module, or why it could not be loaded.
struct VipsStills {
    bool (*handles)(const QString &) = nullptr;
    void (*decode)(const QString &, const std::function<QSize(QSize)> &, VipsStill *) = nullptr;
    QString failure;
};

// Loaded once, on the first photo that needs it, from any decoding thread.
const VipsStills &vipsStills()
{
    static const VipsStills loaded = [] {
        VipsStills stills;
        QLibrary library(QCoreApplication::applicationDirPath() + QStringLiteral("/" SORVANE_MODULE_DIR "/")
            + QStringLiteral("sorvane_vips_stills"));
        if (library.load()) {
            stills.handles = reinterpret_cast<decltype(stills.handles)>(library.resolve("sorvaneVipsStillHandles"));
            stills.decode = reinterpret_cast<decltype(stills.decode)>(library.resolve("sorvaneVipsStillDecode"));
        }
        if (!stills.handles || !stills.decode) {
            stills.failure = library.errorString();
            qCWarning(lcSlideshow, "HEIC, AVIF and JPEG XL photos cannot be shown: %s", qUtf8Printable(stills.failure));
        }
        return stills;
    }();
    return loaded;
}

} // namespace

void VipsSlideDecoding::install()
{
    SlideImageDecoder::setOtherFormats([](const SlideDecodeRequest &request) -> std::optional<SlideDecodeResult> {
        if (!ForeignStillFormat::sniff(request.path))
            return std::nullopt;
        const VipsStills &stills = vipsStills();
        if (!stills.failure.isEmpty() || !stills.handles(request.path))
            return std::nullopt;
        VipsStill still;
        stills.decode(
            request.path,
            [&request](
                QSize upright) { return SlideImageDecoder::decodedSize(upright, request.target, request.scaling); },
            &still);
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
