#pragma once

#include "media/VideoTier.h"

#include <QStringList>

#include <optional>

// The file extensions that make a file a video, grouped by the tier of their
// container. Extensions are lower case and without the dot. Each list is built
// on first use and never changes afterwards, so references to them stay valid
// and may be shared between threads.
namespace sorvane::VideoExtensions {

const QStringList &tier1Extensions();
const QStringList &tier2Extensions();
const QStringList &tier3Extensions();
// The three lists joined, tier1 first: every extension that marks a video.
const QStringList &allExtensions();

// The tier of a container by its extension, in any case; nothing when the
// extension is not a video's.
std::optional<VideoTier> tierFor(QStringView extension);

} // namespace sorvane::VideoExtensions
