#pragma once

#include "core/PlayerStyle.h"

#include <QString>
#include <QUrl>

namespace sorvane {

// One file to put on every screen.
struct PlayerShownAsset {
    QString itemId;
    QString tier; // "full", "video", "animated", ...
    QUrl url;
    bool isVideo = false;
    bool isAnimated = false;

    bool operator==(const PlayerShownAsset &) const = default;
};

// What the engine asks of the windows, one per screen. The Qt Quick player
// implements it; tests record the calls.
class PlayerSurface {
public:
    virtual ~PlayerSurface() = default;
    virtual void show(const PlayerShownAsset &asset) = 0;
    virtual void pauseVideo() = 0;
    virtual void resumeVideo() = 0;
    // Rebuilds the windows for a style.
    virtual void presentStyle(PlayerStyle style) = 0;
    // A step taken while a wall style is on screen goes to the wall.
    virtual void stepWall(int step) = 0;
    // The file that follows the one on screen, so that it can be decoded ahead.
    virtual void preload(const PlayerShownAsset &asset) { }
};

} // namespace sorvane
