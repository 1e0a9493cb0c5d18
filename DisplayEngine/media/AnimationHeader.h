#pragma once

#include "media/AnimationType.h"

#include <QByteArray>
#include <QString>

namespace sorvane {

// Tells an animated GIF or WebP from a still one by the first bytes of the file, without
// decoding a frame: a GIF that loops carries its looping block before the first image, and
// an animated WebP sets the animation flag of its extended header.
class AnimationHeader {
public:
    // How many leading bytes `typeOf` looks at.
    static constexpr qsizetype kHeadBytes = 4096;

    // `none` for a still image, a file of another kind or one that cannot be read.
    static AnimationType typeOfFile(const QString &path);
    static AnimationType typeOf(const QByteArray &head);
};

} // namespace sorvane
