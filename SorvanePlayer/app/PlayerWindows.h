#pragma once

#include "core/PlayerSurface.h"

#include <QList>
#include <QPointer>
#include <QQuickWindow>

#include <functional>
#include <memory>

class QQmlEngine;

namespace sorvane {

class OpenedBundle;
class PlayerCollageWall;
class PlayerControlsModel;
class PlayerSlideModel;

// The playback windows, one per screen: in the classic style all show the engine's item,
// in the wall styles each draws its own wall.
class PlayerWindows final : public PlayerSurface {
public:
    // "3 of 120" for the caption line; asked at every show.
    using ProgressText = std::function<QString()>;

    PlayerWindows(QQmlEngine &engine, std::shared_ptr<OpenedBundle> bundle, PlayerSlideModel &slides,
        PlayerControlsModel &controls, PlayerCollageWall &walls, ProgressText progress);
    ~PlayerWindows() override;

    PlayerWindows(const PlayerWindows &) = delete;
    PlayerWindows &operator=(const PlayerWindows &) = delete;

    void show(const PlayerShownAsset &asset) override;
    void pauseVideo() override;
    void resumeVideo() override;
    void presentStyle(PlayerStyle style) override;
    void stepWall(int step) override;
    void preload(const PlayerShownAsset &asset) override;

    // The next presentStyle() builds the windows again for the screens there are now.
    void screensChanged() { m_rebuild = true; }
    void close();
    QList<QQuickWindow *> windows() const;

private:
    void build(PlayerStyle style);
    void showWalls(PlayerStyle style);

    QQmlEngine &m_engine;
    std::shared_ptr<OpenedBundle> m_bundle;
    PlayerSlideModel &m_slides;
    PlayerControlsModel &m_controls;
    PlayerCollageWall &m_walls;
    ProgressText m_progress;
    QList<QPointer<QQuickWindow>> m_windows;
    bool m_rebuild = true;
};

} // namespace sorvane
