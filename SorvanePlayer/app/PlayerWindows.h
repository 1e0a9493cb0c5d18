#pragma once

#include "core/PlayerSurface.h"
#include "views/ScreenWindows.h"

#include <QList>
#include <QQuickWindow>

#include <functional>
#include <memory>

class QQmlEngine;

namespace sorvane {

class OpenedBundle;
class PlayerCollageWall;
class PlayerControlsModel;
class SlideModel;
class TimerScheduler;

// The playback windows, one per screen: in the classic style all show the engine's item,
// in the wall styles each draws its own wall. When the screens change, the windows are made
// again at once and screens() says so (rebuilt), so the engine can present its style again.
class PlayerWindows final : public PlayerSurface {
public:
    // "3 of 120" for the caption line; asked at every show.
    using ProgressText = std::function<QString()>;

    PlayerWindows(QQmlEngine &engine, std::shared_ptr<OpenedBundle> bundle, SlideModel &slides,
        PlayerControlsModel &controls, PlayerCollageWall &walls, TimerScheduler &timers, ProgressText progress);
    ~PlayerWindows() override;

    PlayerWindows(const PlayerWindows &) = delete;
    PlayerWindows &operator=(const PlayerWindows &) = delete;

    void show(const PlayerShownAsset &asset) override;
    void pauseVideo() override;
    void resumeVideo() override;
    void presentStyle(PlayerStyle style) override;
    void stepWall(int step) override;
    void preload(const PlayerShownAsset &asset) override;

    void close() { m_screens.close(); }
    QList<QQuickWindow *> windows() const { return m_screens.windows(); }
    ScreenWindows &screens() { return m_screens; }

private:
    QQuickWindow *makeWindow(QScreen *screen, int index);
    void build(PlayerStyle style);
    void logScreens() const;
    void showWalls(PlayerStyle style);

    QQmlEngine &m_engine;
    std::shared_ptr<OpenedBundle> m_bundle;
    SlideModel &m_slides;
    PlayerControlsModel &m_controls;
    PlayerCollageWall &m_walls;
    ProgressText m_progress;
    ScreenWindows m_screens;
};

} // namespace sorvane
