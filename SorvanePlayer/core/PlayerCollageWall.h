#pragma once

#include "collage/CollageLayout.h"
#include "collage/CollageSlideshowSettings.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageWallState.h"
#include "core/PlayerStyle.h"
#include "media/ImageItem.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/TimerScheduler.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>

#include <optional>

namespace sorvane {

class Clock;
class CollageWallModel;
class OpenedBundle;

// The wall behind the player's wall styles: "photo-wall" draws the bundle's collage layout
// (Flow or Varied) with the bundle's flow preferences, "memory-table" the Scatter table. Each
// screen has its own wall; a screen's wall of a layout comes back as it was left. The walls'
// settings live in memory, made from the viewer's settings and the bundle's, so a bundle
// never changes what the viewer stored.
class PlayerCollageWall : public QObject {
    Q_OBJECT

public:
    PlayerCollageWall(OpenedBundle &bundle, const CollageSlideshowSettings &viewerSettings, const Clock &clock,
        TimerScheduler &timers, QObject *parent = nullptr);
    ~PlayerCollageWall() override;

    // The layout a style draws; nothing for the classic style.
    static std::optional<CollageLayout> layoutFor(PlayerStyle style, CollageLayout bundleLayout);
    std::optional<CollageLayout> layoutFor(PlayerStyle style) const;

    // One wall per screen for `style`, empty for the classic style. The walls made before
    // are captured first and let go once their views are gone.
    QList<CollageWallModel *> wallsFor(PlayerStyle style, int screenCount);
    const QList<CollageWallModel *> &walls() const { return m_walls; }

    // The photos the walls draw: every item with a still to show, in play order.
    const QList<ImageItem> &pool() const { return m_pool; }
    const CollageSlideshowSettingsStore &settings() const { return m_store; }

    // Arrow keys: back (-1) or forward (+1) through each wall's history; forward past the
    // newest change makes a new one.
    void step(int delta);
    void setPaused(bool paused);
    // A key was pressed: walls count it as an interaction and ignore clicks right after it.
    void noteInput();
    // A view drew its first tile.
    Q_INVOKABLE void tileShown();

Q_SIGNALS:
    // A photo was double-clicked: the bundle item to open in the classic style.
    void openItem(const QString &bundleItemId);
    void firstTileShown();

private:
    void release();

    const Clock &m_clock;
    TimerScheduler &m_timers;
    InMemoryPreferences m_preferences;
    CollageSlideshowSettingsStore m_store;
    CollageLayout m_bundleLayout;
    quint64 m_seed;
    QList<ImageItem> m_pool;
    QHash<QUuid, QString> m_bundleItemOf;
    QList<CollageWallModel *> m_walls;
    QList<CollageWallModel *> m_retired;
    bool m_paused = false;
    bool m_tileShown = false;
    // Per screen, the last state of each layout's wall.
    QHash<int, QHash<CollageLayout, CollageWallState>> m_left;
};

} // namespace sorvane
