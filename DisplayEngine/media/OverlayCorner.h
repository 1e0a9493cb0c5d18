#pragma once

#include "media/RawValue.h"

#include <QString>

namespace sorvane {

// Corner of the slide that holds the brand logo.
enum class OverlayCorner { topLeft, topRight, bottomLeft, bottomRight };

// "TopLeft", "TopRight", "BottomLeft" or "BottomRight": the text stored in the
// overlay settings file. Bundles use their own wire values instead.
inline QString toRaw(OverlayCorner corner)
{
    switch (corner) {
    case OverlayCorner::topLeft:
        return QStringLiteral("TopLeft");
    case OverlayCorner::topRight:
        return QStringLiteral("TopRight");
    case OverlayCorner::bottomLeft:
        return QStringLiteral("BottomLeft");
    case OverlayCorner::bottomRight:
        return QStringLiteral("BottomRight");
    }
    return {};
}

template <> inline std::optional<OverlayCorner> fromRaw<OverlayCorner>(QStringView raw)
{
    for (const OverlayCorner corner :
        {OverlayCorner::topLeft, OverlayCorner::topRight, OverlayCorner::bottomLeft, OverlayCorner::bottomRight}) {
        if (raw == toRaw(corner))
            return corner;
    }
    return std::nullopt;
}

} // namespace sorvane
