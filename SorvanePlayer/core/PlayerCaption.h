#pragma once

#include "bundle/BundleFileDisplayFormat.h"

#include <QString>

#include <optional>

namespace sorvane {

// The file-name caption under a slide. The name a photo had on the author's
// computer is the one a viewer recognises; a bundle that left it out (for
// privacy) gets no caption rather than a meaningless content hash.
class PlayerCaption {
public:
    // sourceName is the item's recorded name (a path relative to the exported
    // folder); shownPath the absolute path of the file on screen.
    static QString text(
        const std::optional<QString> &sourceName, const QString &shownPath, BundleFileDisplayFormat format);
};

} // namespace sorvane
