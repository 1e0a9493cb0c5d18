#include "media/MediaType.h"

namespace sorvane {

QString toRaw(MediaType type)
{
    switch (type) {
    case MediaType::image:
        return QStringLiteral("image");
    case MediaType::video:
        return QStringLiteral("video");
    case MediaType::livePhoto:
        return QStringLiteral("livePhoto");
    }
    return {};
}

template <> std::optional<MediaType> fromRaw<MediaType>(QStringView raw)
{
    for (const MediaType type : {MediaType::image, MediaType::video, MediaType::livePhoto}) {
        if (raw == toRaw(type))
            return type;
    }
    return std::nullopt;
}

} // namespace sorvane
