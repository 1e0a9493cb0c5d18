#pragma once

#include <QSize>
#include <QtGlobal>

namespace sorvane {

// A decoded thumbnail, opaque to the engine: the views' decoder keeps its pixels in a subclass.
// The engine only needs to know how big it is and what it costs to keep.
class DecodedThumbnail {
public:
    virtual ~DecodedThumbnail() = default;
    // In pixels, upright.
    virtual QSize size() const = 0;
    // Bytes of memory it holds; what the thumbnail cache charges for keeping it.
    virtual qint64 cost() const = 0;
};

} // namespace sorvane
