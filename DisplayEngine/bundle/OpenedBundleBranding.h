#pragma once

#include "media/BrandOverlaySettings.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace sorvane {

struct OpenedBundleBranding {
    std::optional<QString> displayName;
    std::optional<QUrl> logoURL;
    bool holding = false;
    BrandOverlaySettings overlay;

    bool operator==(const OpenedBundleBranding &) const = default;
};

} // namespace sorvane
