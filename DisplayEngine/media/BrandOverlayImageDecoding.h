#pragma once

#include <QSize>
#include <QString>

#include <optional>

namespace sorvane {

// Decodes the brand logo. The core only needs to know whether the file is a
// usable image and how big it is; the player's implementation decodes with the
// GUI toolkit and keeps the decoded image for the view, so the core stays free
// of it.
class BrandOverlayImageDecoding {
public:
    virtual ~BrandOverlayImageDecoding() = default;
    // The decoded pixel size of the image at `path`, or nothing when it does
    // not decode.
    virtual std::optional<QSize> decode(const QString &path) const = 0;
};

} // namespace sorvane
