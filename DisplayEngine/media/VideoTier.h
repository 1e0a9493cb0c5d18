#pragma once

#include "media/RawValue.h"

#include <QString>

namespace sorvane {

// How well the platform's media framework handles a video container, best first.
enum class VideoTier { tier1, tier2, tier3 };

// "tier1", "tier2" or "tier3".
QString toRaw(VideoTier tier);
template <> std::optional<VideoTier> fromRaw<VideoTier>(QStringView raw);

} // namespace sorvane
