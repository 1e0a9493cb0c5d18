#pragma once

#include "collage/CollageLayout.h"
#include "slideshow/DisplayMode.h"

#include <QtGlobal>
#include <optional>

namespace sorvane {

struct BundlePerScreenPreference {
    std::optional<qint64> screenOrdinal;
    DisplayMode preferredMode = DisplayMode::standard;
    CollageLayout preferredCollageLayout = CollageLayout::flow;

    bool operator==(const BundlePerScreenPreference &) const = default;
};

} // namespace sorvane
