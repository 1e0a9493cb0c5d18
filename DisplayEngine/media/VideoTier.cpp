#include "media/VideoTier.h"

namespace sorvane {

QString toRaw(VideoTier tier)
{
    switch (tier) {
    case VideoTier::tier1:
        return QStringLiteral("tier1");
    case VideoTier::tier2:
        return QStringLiteral("tier2");
    case VideoTier::tier3:
        return QStringLiteral("tier3");
    }
    return {};
}

template <> std::optional<VideoTier> fromRaw<VideoTier>(QStringView raw)
{
    for (const VideoTier tier : {VideoTier::tier1, VideoTier::tier2, VideoTier::tier3}) {
        if (raw == toRaw(tier))
            return tier;
    }
    return std::nullopt;
}

} // namespace sorvane
