#include "media/VideoExtensions.h"

namespace sorvane::VideoExtensions {

const QStringList &tier1Extensions()
{
    static const QStringList extensions {
        QStringLiteral("mp4"), QStringLiteral("mov"), QStringLiteral("m4v"), QStringLiteral("qt")};
    return extensions;
}

const QStringList &tier2Extensions()
{
    static const QStringList extensions {
        QStringLiteral("3gp"), QStringLiteral("3gpp"), QStringLiteral("mts"), QStringLiteral("m2ts")};
    return extensions;
}

const QStringList &tier3Extensions()
{
    static const QStringList extensions {QStringLiteral("avi"), QStringLiteral("mkv"), QStringLiteral("wmv"),
        QStringLiteral("webm"), QStringLiteral("flv"), QStringLiteral("rmvb")};
    return extensions;
}

const QStringList &allExtensions()
{
    static const QStringList extensions = tier1Extensions() + tier2Extensions() + tier3Extensions();
    return extensions;
}

std::optional<VideoTier> tierFor(QStringView extension)
{
    const QString folded = extension.toString().toLower();
    if (tier1Extensions().contains(folded))
        return VideoTier::tier1;
    if (tier2Extensions().contains(folded))
        return VideoTier::tier2;
    if (tier3Extensions().contains(folded))
        return VideoTier::tier3;
    return std::nullopt;
}

} // namespace sorvane::VideoExtensions
