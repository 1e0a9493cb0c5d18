#pragma once

#include "media/DecodedThumbnail.h"

#include <QSize>
#include <QString>

#include <memory>

namespace sorvane {

// A decoded thumbnail, or why there is none.
struct ThumbnailResult {
    // Null on failure. Shared: the cache and every tile that shows it hold the same pixels.
    std::shared_ptr<const DecodedThumbnail> thumbnail;
    // Why there is no thumbnail; empty on success.
    QString error;

    bool ok() const { return thumbnail != nullptr; }
    // In pixels; invalid on failure.
    QSize size() const { return thumbnail ? thumbnail->size() : QSize(); }
};

} // namespace sorvane
