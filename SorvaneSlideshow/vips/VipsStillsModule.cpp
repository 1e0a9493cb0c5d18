// A module of its own, loaded the first time a slide needs it: a show that never meets a
// HEIC, AVIF or JPEG XL photo does not load libvips and the hundred libraries it brings,
// nor pay for them in start-up time and memory.
#include "codecs/VipsStillDecoder.h"

#include <QtGlobal>

extern "C" Q_DECL_EXPORT bool sorvaneVipsStillHandles(const QString &path)
{
    return sorvane::VipsStillDecoder::handles(path);
}

extern "C" Q_DECL_EXPORT void sorvaneVipsStillDecode(
    const QString &path, const std::function<QSize(QSize)> &sizeFor, sorvane::VipsStill *still)
{
    *still = sorvane::VipsStillDecoder::decode(path, sizeFor);
}
