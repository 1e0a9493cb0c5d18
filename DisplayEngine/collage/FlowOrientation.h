#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// Direction in which Flow strips run and scroll.
enum class FlowOrientation { vertical, horizontal };

inline constexpr std::array<FlowOrientation, 2> allFlowOrientations {
    FlowOrientation::vertical, FlowOrientation::horizontal};

// "vertical" or "horizontal", stored and in manifests alike.
inline QString toRaw(FlowOrientation orientation)
{
    switch (orientation) {
    case FlowOrientation::vertical:
        return QStringLiteral("vertical");
    case FlowOrientation::horizontal:
        return QStringLiteral("horizontal");
    }
    return {};
}

template <> inline std::optional<FlowOrientation> fromRaw<FlowOrientation>(QStringView raw)
{
    for (const FlowOrientation orientation : allFlowOrientations) {
        if (raw == toRaw(orientation))
            return orientation;
    }
    return std::nullopt;
}

// "Vertical" or "Horizontal", as menus show it.
inline QString label(FlowOrientation orientation)
{
    switch (orientation) {
    case FlowOrientation::vertical:
        return QStringLiteral("Vertical");
    case FlowOrientation::horizontal:
        return QStringLiteral("Horizontal");
    }
    return {};
}

} // namespace sorvane
