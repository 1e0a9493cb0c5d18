#pragma once

#include "media/RawValue.h"

#include <QString>

namespace sorvane {

// What kind of media an item is.
enum class MediaType { image, video, livePhoto };

// "image", "video" or "livePhoto".
QString toRaw(MediaType type);
template <> std::optional<MediaType> fromRaw<MediaType>(QStringView raw);

} // namespace sorvane
