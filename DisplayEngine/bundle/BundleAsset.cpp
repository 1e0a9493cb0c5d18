#include "bundle/BundleAsset.h"

#include "bundle/ManifestFields.h"

namespace sorvane {

BundleAsset BundleAsset::fromJson(const QJsonObject &o)
{
    ManifestFields::MemberReader r(o);
    using namespace ManifestFields;
    BundleAsset a;
    a.path = string(r.take(QLatin1StringView("path")));
    a.w = integer(r.take(QLatin1StringView("w")));
    a.h = integer(r.take(QLatin1StringView("h")));
    a.bytes = integer(r.take(QLatin1StringView("bytes")));
    a.sha256 = string(r.take(QLatin1StringView("sha256")));
    a.durationSeconds = number(r.take(QLatin1StringView("duration_seconds")));
    a.container = string(r.take(QLatin1StringView("container")));
    a.videoCodec = string(r.take(QLatin1StringView("video_codec")));
    a.audioCodec = string(r.take(QLatin1StringView("audio_codec")));
    a.hasAudio = boolean(r.take(QLatin1StringView("has_audio")));
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
