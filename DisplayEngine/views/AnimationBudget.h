#pragma once

#include <QSize>
#include <QString>

namespace sorvane {

// Decides whether an animated GIF or WebP may be handed to the animation view. That view
// keeps every frame it has shown as a whole canvas, so the memory it takes grows to
// canvas × frames: a file of a few kilobytes can declare a 65535 × 65535 canvas and
// thousands of one-pixel frames. The header and the frame count are read, never a frame.
class AnimationBudget {
public:
    // Decoded pixels one animation may hold: 192 MiB at 4 bytes a pixel.
    static constexpr qint64 kMaxBytes = 192LL << 20;

    // Empty when the animation fits; otherwise why it is refused, for the log.
    static QString refusal(const QString &path);
    // The same rule on what a header declares (frames < 0: the count is unknown).
    static QString refusal(QSize canvas, int frames);
};

} // namespace sorvane
