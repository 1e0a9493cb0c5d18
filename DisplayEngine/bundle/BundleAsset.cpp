#include "bundle/BundleAsset.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

BundleAsset BundleAsset::fromJson(const QJsonObject &o)
{
    using namespace ManifestFields;
    BundleAsset a;
    a.path = string(o.value(QLatin1StringView("path")));
    a.w = integer(o.value(QLatin1StringView("w")));
    a.h = integer(o.value(QLatin1StringView("h")));
    a.bytes = integer(o.value(QLatin1StringView("bytes")));
    a.sha256 = string(o.value(QLatin1StringView("sha256")));
    a.durationSeconds = number(o.value(QLatin1StringView("duration_seconds")));
    a.container = string(o.value(QLatin1StringView("container")));
    a.videoCodec = string(o.value(QLatin1StringView("video_codec")));
    a.audioCodec = string(o.value(QLatin1StringView("audio_codec")));
    a.hasAudio = boolean(o.value(QLatin1StringView("has_audio")));
    return a;
}

BundleJSON BundleAsset::toJson() const
{
    BundleJSON j = BundleJSON::object();
    j.insert(QStringLiteral("path"), path);
    j.insert(QStringLiteral("w"), w);
    j.insert(QStringLiteral("h"), h);
    j.insert(QStringLiteral("bytes"), bytes);
    j.insert(QStringLiteral("sha256"), sha256);
    j.insert(QStringLiteral("duration_seconds"), durationSeconds);
    j.insert(QStringLiteral("container"), container);
    j.insert(QStringLiteral("video_codec"), videoCodec);
    j.insert(QStringLiteral("audio_codec"), audioCodec);
    j.insert(QStringLiteral("has_audio"), hasAudio);
    return j;
}

} // namespace sorvane
