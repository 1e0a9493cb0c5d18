#pragma once

#include <QString>

namespace sorvane {

// A program that can play a video outside the slideshow.
struct ExternalVideoPlayer {
    // Stable identifier for a stored choice: "vlc", "mpv", "celluloid", "default" or "chosen".
    QString id;
    // The name shown in a menu.
    QString name;
    // The absolute path of the program that is started.
    QString program;

    friend bool operator==(const ExternalVideoPlayer &, const ExternalVideoPlayer &) = default;
};

} // namespace sorvane
