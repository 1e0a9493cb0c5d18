#pragma once

#include "views/SlideDecodeRequest.h"
#include "views/SlideDecodeResult.h"

#include <QSize>

#include <functional>
#include <optional>

namespace sorvane {

// Decodes one slide for display: upright (EXIF orientation), no larger than its scaling mode
// needs, colour filter applied. Files come from strangers' storage, so sizes are checked before
// anything is allocated. Stateless: safe to call from any number of threads at once.
class SlideImageDecoder {
public:
    // Most memory one decoded image may take, unless the request says otherwise.
    static constexpr int kAllocationLimitMiB = SlideDecodeRequest::kDefaultAllocationLimitMiB;
    // Largest picture accepted, in pixels, whatever size it is decoded at.
    static constexpr qint64 kMaxSourcePixels = qint64(1) << 28;

    static SlideDecodeResult decode(const SlideDecodeRequest &request);

    // Another decoder for files Qt does not recognise (formats only a codec library reads
    // here); it answers nothing for files it does not take either. Set once, before the first
    // decode; applications without one show such files as undecodable.
    using OtherFormats = std::function<std::optional<SlideDecodeResult>(const SlideDecodeRequest &)>;
    static void setOtherFormats(OtherFormats decoder);

    // The size an upright picture of `source` pixels is decoded at for `target` (sides <= 0 are
    // unconstrained): fit inside or cover the target, never enlarged; actualSize keeps `source`.
    static QSize decodedSize(QSize source, QSize target, ImageScalingMode scaling);
};

} // namespace sorvane
