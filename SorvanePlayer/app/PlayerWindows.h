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
class PlayerControlsModel;
class PlayerSlideModel;

// The playback windows, one per screen, all showing the engine's item. The wall
// styles are drawn by the classic view for now, so the engine steps for them.
class PlayerWindows final : public PlayerSurface {
public:
    // "3 of 120" for the caption line; asked at every show.
    using ProgressText = std::function<QString()>;

    PlayerWindows(QQmlEngine &engine, std::shared_ptr<OpenedBundle> bundle, PlayerSlideModel &slides,
        PlayerControlsModel &controls, ProgressText progress);
    ~PlayerWindows() override;

    PlayerWindows(const PlayerWindows &) = delete;
    PlayerWindows &operator=(const PlayerWindows &) = delete;

    void show(const PlayerShownAsset &asset) override;
    void pauseVideo() override;
    void resumeVideo() override;
    void presentStyle(PlayerStyle style) override;
    void stepWall(int step) override { }
    void preload(const PlayerShownAsset &asset) override;
    bool drawsWallStyles() const override { return false; }

    // The next presentStyle() builds the windows again for the screens there are now.
    void screensChanged() { m_rebuild = true; }
    void close();
    QList<QQuickWindow *> windows() const;

private:
    void build();

    QQmlEngine &m_engine;
    std::shared_ptr<OpenedBundle> m_bundle;
    PlayerSlideModel &m_slides;
    PlayerControlsModel &m_controls;
    ProgressText m_progress;
    QList<QPointer<QQuickWindow>> m_windows;
    bool m_rebuild = true;
};

} // namespace sorvane
