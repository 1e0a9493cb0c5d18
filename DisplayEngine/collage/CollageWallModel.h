#pragma once

#include "collage/CollageAnimation.h"
#include "collage/CollageLayout.h"
#include "collage/CollageRole.h"
#include "collage/CollageWallState.h"
#include "collage/CollageWallStep.h"
#include "collage/FlowOrientation.h"
#include "media/ImageItem.h"
#include "slideshow/TimerScheduler.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariantList>

#include <limits>
#include <memory>
#include <optional>

namespace sorvane {

class Clock;
class CollageCoordinator;
class CollageSlideshowSettingsStore;
class CollageWall;
class FlowWallDriver;
class TagManager;

// The logic behind the view that draws one collage wall: it holds the host's inputs,
// runs the wall's heartbeat, decides when the wall must hold still, turns clicks on a
// tile into steps through that tile's history and publishes what the view draws.
// Times are seconds on the injected clock's steady timeline. Main thread only.
class CollageWallModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(sorvane::CollageLayout layout READ layout WRITE setLayout NOTIFY layoutChanged)
    Q_PROPERTY(sorvane::CollageRole role READ role WRITE setRole NOTIFY roleChanged)
    // The layout's stored name ("collage", "flow", "scatter"), for the view to pick its drawing.
    Q_PROPERTY(QString layoutName READ layoutName NOTIFY layoutChanged)
    // From the settings: tiles show their hover controls; the Flow wall cycles tiles by itself.
    Q_PROPERTY(bool showHoverControls READ showHoverControls NOTIFY showHoverControlsChanged)
    Q_PROPERTY(bool autoCycling READ autoCycling NOTIFY autoCyclingChanged)
    // Moves on whenever tags change, so that views asking tagsFor() ask again.
    Q_PROPERTY(int tagRevision READ tagRevision NOTIFY tagRevisionChanged)
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused NOTIFY pausedChanged)
    Q_PROPERTY(double externalInteractionAt READ externalInteractionAt WRITE setExternalInteractionAt NOTIFY
            externalInteractionAtChanged)
    Q_PROPERTY(double lastInteractionAt READ lastInteractionAt NOTIFY lastInteractionAtChanged)
    Q_PROPERTY(qint64 poolGeneration READ poolGeneration NOTIFY poolGenerationChanged)
    Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged)
    Q_PROPERTY(bool menuOpen READ isMenuOpen NOTIFY menuOpenChanged)
    // Per slot, in slot order: {"slot": int, "itemId": string, "url": url}.
    Q_PROPERTY(QVariantList tiles READ tiles NOTIFY tilesChanged)
    // The Scatter pile, bottom first: {"itemId", "url", "x", "y" (unit square), "rotation", "scale"}.
    Q_PROPERTY(QVariantList drops READ drops NOTIFY dropsChanged)
    Q_PROPERTY(int variantIndex READ variantIndex NOTIFY variantIndexChanged)
    // The Varied template in use, one QRectF in the unit square per slot; empty for other layouts.
    Q_PROPERTY(QVariantList variedRects READ variedRects NOTIFY variedRectsChanged)
    // The Flow strips, in strip order: {"index", "thickness", "crossStart", "cycle", "copies",
    // "horizontal", "tiles": [{"slot", "itemId", "url", "start", "length"}]}; empty for other layouts.
    Q_PROPERTY(QVariantList flowStrips READ flowStrips NOTIFY flowStripsChanged)
    // How many strips the Flow wall has at its size (also offered to the host's menus).
    Q_PROPERTY(int flowColumnCount READ flowColumnCount NOTIFY flowColumnCountChanged)

public:
    static constexpr double heartbeat = 0.5;
    // A click this soon after the latest input event is taken as part of that event.
    static constexpr double clickInputGuard = 0.2;

    // `seed` makes the wall's draws reproducible; the clock and timers must outlive the model.
    CollageWallModel(const Clock &clock, TimerScheduler &timers, quint64 seed, QObject *parent = nullptr);
    ~CollageWallModel() override;

    // Inputs. Changing the pool, layout or coordinator of a shown wall builds it afresh.
    void setPool(const QList<ImageItem> &pool, qint64 poolGeneration);
    void setLayout(CollageLayout layout);
    void setRole(CollageRole role);
    void setCoordinator(CollageCoordinator *coordinator);
    // Observed for the wall's pacing; null keeps the defaults.
    void setSettingsStore(CollageSlideshowSettingsStore *store);
    // Where hover controls find an item's tags; null shows none.
    void setTagManager(TagManager *tags);
    void setPaused(bool paused);
    void setExternalInteractionAt(double at);
    // Where `appear` starts from when it is of the current pool generation.
    void setRestoreWall(const std::optional<CollageWallState> &state) { m_restoreWall = state; }
    // An orientation the host forces on the Flow wall, whatever the settings say.
    void setOrientationOverride(std::optional<FlowOrientation> orientation);
    // The size the wall is drawn at, in points; the Flow wall is seeded for it.
    Q_INVOKABLE void setViewport(double width, double height);

    CollageLayout layout() const { return m_layout; }
    QString layoutName() const { return toRaw(m_layout); }
    bool showHoverControls() const { return m_showHoverControls; }
    bool autoCycling() const { return m_autoCycling; }
    int tagRevision() const { return m_tagRevision; }
    CollageRole role() const { return m_role; }
    bool isPaused() const { return m_paused; }
    double externalInteractionAt() const { return m_externalInteractionAt; }
    double lastInteractionAt() const { return m_lastInteractionAt; }
    qint64 poolGeneration() const { return m_poolGeneration; }
    bool isRunning() const { return m_ticker.has_value(); }
    bool isMenuOpen() const { return !m_openMenus.isEmpty(); }
    QVariantList tiles() const { return m_tiles; }
    QVariantList drops() const { return m_drops; }
    int variantIndex() const { return m_variantIndex; }
    QVariantList variedRects() const { return m_variedRects; }
    QVariantList flowStrips() const { return m_flowStrips; }
    int flowColumnCount() const { return m_flowColumnCount; }

    // The wall's content; empty before `appear`.
    CollageWallState wallState() const;

    // Builds the wall (restored when the restore state is of the current pool generation,
    // else fresh) and starts the heartbeat. Returns whether the wall was restored.
    Q_INVOKABLE bool appear();
    // The wall is going away: hands its state out through wallCaptured and stops the heartbeat.
    Q_INVOKABLE void capture();

    // A context menu of a tile opened or closed; the wall holds still while any is open.
    Q_INVOKABLE void menuOpened(const QString &menuId);
    Q_INVOKABLE void menuClosed(const QString &menuId);
    // Flips the Flow wall's automatic tile cycling in the settings store.
    Q_INVOKABLE void toggleFlowAutoCycle();

    // The latest input event seen anywhere in the process.
    Q_INVOKABLE void noteInputEvent(double at);
    // A single click on `slot`: the right half shows the next item there, the left half the
    // previous one. Returns whether the tile changed; a click too close to the latest input
    // event is ignored altogether and returns false.
    Q_INVOKABLE bool clickTile(int slot, bool rightHalf, double at);
    // Captures the wall, then asks the host to open the slot's item full-screen. False,
    // doing nothing, for a slot without an item.
    Q_INVOKABLE bool doubleClickTile(int slot);
    // The same for a photo on the Scatter table, named by its item.
    Q_INVOKABLE bool doubleClickItem(const QString &itemId);
    // A single click on a photo of the Scatter table brings it to the top of the pile.
    Q_INVOKABLE bool raiseItem(const QString &itemId);
    // The item's tags, [{"name", "color"}], for its tile's hover controls.
    Q_INVOKABLE QVariantList tagsFor(const QString &itemId) const;
    // Seconds on the wall's clock, for the times views pass back with clicks.
    Q_INVOKABLE double now() const;
    // A history step from the host's keys; counts as an interaction. Returns whether the wall changed.
    bool step(CollageWallStep step);
    // One change of the kind the heartbeat makes, at once (the next photo, the next drop).
    bool changeNow();

    // Each Flow strip's scroll position at this instant, in strip order; asked every frame.
    // A variant list: compiled QML turns a list of reals into NaN when it stores it in a var.
    Q_INVOKABLE QVariantList flowOffsets() const;
    // The pointer moved over the wall: the Flow wall pauses its scroll for a moment.
    Q_INVOKABLE void pointerMoved();
    // A tile's image arrived with this width / height; it shapes the item's Flow tile.
    Q_INVOKABLE void reportAspect(const QString &itemId, double aspect);
    // A tile's image could not be decoded: the item leaves the wall and its places refill.
    Q_INVOKABLE void tileFailed(const QString &itemId);

Q_SIGNALS:
    void layoutChanged();
    void roleChanged();
    void pausedChanged();
    void externalInteractionAtChanged();
    void lastInteractionAtChanged();
    void poolGenerationChanged();
    void runningChanged();
    void menuOpenChanged();
    void tilesChanged();
    void dropsChanged();
    void variantIndexChanged();
    void variedRectsChanged();
    void flowStripsChanged();
    void flowColumnCountChanged();
    void showHoverControlsChanged();
    void autoCyclingChanged();
    void tagRevisionChanged();

    // The wall's content changed, animated this way.
    void wallChanged(sorvane::CollageMutationKind kind, const sorvane::CollageAnimation &animation);
    void wallCaptured(const sorvane::CollageWallState &state);
    void drillIn(const QUuid &itemId);

private:
    bool build(bool tryRestore);
    void startTicker();
    void stopTicker();
    void onTick();
    void noteInteraction(double at);
    void applySettings();
    void publish();
    void layoutFlow();
    void publishFlow();

    const Clock &m_clock;
    TimerScheduler &m_timers;
    quint64 m_seed;

    QList<ImageItem> m_pool;
    qint64 m_poolGeneration = 0;
    CollageLayout m_layout = CollageLayout::flow;
    CollageRole m_role = CollageRole::independent;
    QPointer<CollageCoordinator> m_coordinator;
    QPointer<CollageSlideshowSettingsStore> m_store;
    QMetaObject::Connection m_storeConnections[3];
    bool m_paused = false;
    double m_externalInteractionAt = -std::numeric_limits<double>::infinity();
    double m_lastInteractionAt = -std::numeric_limits<double>::infinity();
    double m_lastInputEventAt = -std::numeric_limits<double>::infinity();
    std::optional<CollageWallState> m_restoreWall;

    std::unique_ptr<CollageWall> m_wall;
    std::optional<TimerScheduler::TimerId> m_ticker;
    double m_lastTickAt = 0.0;
    QSet<QString> m_openMenus;

    QVariantList m_tiles;
    QVariantList m_drops;
    int m_variantIndex = 0;
    QVariantList m_variedRects;

    std::unique_ptr<FlowWallDriver> m_flow;
    std::optional<FlowOrientation> m_orientationOverride;
    double m_viewWidth = 0.0;
    double m_viewHeight = 0.0;
    QVariantList m_flowStrips;
    int m_flowColumnCount = 0;
    bool m_showHoverControls = true;
    bool m_autoCycling = false;
    QPointer<TagManager> m_tags;
    QMetaObject::Connection m_tagConnections[2];
    int m_tagRevision = 0;
};

} // namespace sorvane
