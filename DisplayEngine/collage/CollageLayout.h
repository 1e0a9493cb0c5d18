#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// The kind of a collage wall.
enum class CollageLayout {
    // The wall of changing templates. Stored as "collage" and shown as "Varied";
    // a bundle manifest calls it "varied".
    collage,
    flow,
    scatter,
};

// Every layout, in the order menus list them.
inline constexpr std::array<CollageLayout, 3> allCollageLayouts {
    CollageLayout::collage, CollageLayout::flow, CollageLayout::scatter};

// "collage", "flow" or "scatter": the stored text. Manifests use their own
// wire values (see BundleWireValues.h).
inline QString toRaw(CollageLayout layout)
{
    switch (layout) {
    case CollageLayout::collage:
        return QStringLiteral("collage");
    case CollageLayout::flow:
        return QStringLiteral("flow");
    case CollageLayout::scatter:
        return QStringLiteral("scatter");
    }
    return {};
}

template <> inline std::optional<CollageLayout> fromRaw<CollageLayout>(QStringView raw)
{
    for (const CollageLayout layout : allCollageLayouts) {
        if (raw == toRaw(layout))
            return layout;
    }
    return std::nullopt;
}

// "Varied", "Flow" or "Scatter", as menus show it.
inline QString label(CollageLayout layout)
{
    switch (layout) {
    case CollageLayout::collage:
        return QStringLiteral("Varied");
    case CollageLayout::flow:
        return QStringLiteral("Flow");
    case CollageLayout::scatter:
        return QStringLiteral("Scatter");
    }
    return {};
}

} // namespace sorvane
