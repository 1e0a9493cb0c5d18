#pragma once

#include <QString>
#include <optional>

namespace sorvane {

// How the player presents a bundle; chosen by the viewer and remembered per bundle.
enum class PlayerStyle { photoWall, memoryTable, classic };

inline QString toRaw(PlayerStyle style)
{
    switch (style) {
    case PlayerStyle::photoWall:
        return QStringLiteral("photo-wall");
    case PlayerStyle::memoryTable:
        return QStringLiteral("memory-table");
    case PlayerStyle::classic:
        return QStringLiteral("classic");
    }
    return {};
}

inline std::optional<PlayerStyle> playerStyleFromRaw(const QString &raw)
{
    for (const PlayerStyle style : {PlayerStyle::photoWall, PlayerStyle::memoryTable, PlayerStyle::classic}) {
        if (toRaw(style) == raw)
            return style;
    }
    return std::nullopt;
}

} // namespace sorvane
