#pragma once

#include "media/RawValue.h"

#include <QString>

#include <array>

namespace sorvane {

// How Flow tiles share a strip's length.
enum class FlowWeightMode { proportional, weighted };

inline constexpr std::array<FlowWeightMode, 2> allFlowWeightModes {
    FlowWeightMode::proportional, FlowWeightMode::weighted};

// "proportional" or "weighted", stored and in manifests alike.
inline QString toRaw(FlowWeightMode mode)
{
    switch (mode) {
    case FlowWeightMode::proportional:
        return QStringLiteral("proportional");
    case FlowWeightMode::weighted:
        return QStringLiteral("weighted");
    }
    return {};
}

template <> inline std::optional<FlowWeightMode> fromRaw<FlowWeightMode>(QStringView raw)
{
    for (const FlowWeightMode mode : allFlowWeightModes) {
        if (raw == toRaw(mode))
            return mode;
    }
    return std::nullopt;
}

} // namespace sorvane
