#pragma once

#include "bundle/OpenedBundle.h"
#include "core/PlayerStyle.h"
#include "core/PlayerSurface.h"
#include "slideshow/TimerScheduler.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sorvane {

// Plays one opened bundle on every screen: the play order and position, hold
// times, wrapping, pause, steps, style changes, and videos that end or fail
// (down the resolution ladder). Main thread only; time comes from the scheduler.
class PlayerEngine : public QObject {
    Q_OBJECT
    Q_PROPERTY(qint64 position READ position NOTIFY positionChanged)
    Q_PROPERTY(bool paused READ paused NOTIFY pausedChanged)
    Q_PROPERTY(QString style READ styleRaw NOTIFY styleChanged)
    Q_PROPERTY(QString currentItemId READ currentItemId NOTIFY positionChanged)
    Q_PROPERTY(qint64 itemCount READ itemCount NOTIFY itemCountChanged)

public:
    // Called with the position and the style picked in this run whenever the resume record should be saved.
    using SaveResume = std::function<void(qint64 position, std::optional<PlayerStyle> chosenStyle)>;

    struct Start {
        std::optional<qint64> resumePosition;
        std::optional<PlayerStyle> resumeStyle;
    };

    PlayerEngine(std::shared_ptr<OpenedBundle> bundle, PlayerSurface &surface, TimerScheduler &timers,
        SaveResume saveResume = {}, QObject *parent = nullptr);
    ~PlayerEngine() override;

    // Computes the play order, takes the starting position and style, and shows the first item.
    void start(const Start &resume = {});
    void stop();

    void togglePause();
    void step(int delta);
    void next() { step(+1); }
    void previous() { step(-1); }
    void chooseStyle(PlayerStyle style);
    // A photo double-clicked on the wall: the classic style takes over at that item.
    // False, changing nothing, for an item no longer in the play order.
    bool openFromWall(const QString &itemId);
    void videoEnded();
    // The file on screen could not be played or decoded (a video, or a still that
    // passed the open's size checks but not the decoder): down the ladder it goes.
    void videoFailed();
    // The screens changed: the windows are rebuilt and the current item shown again.
    void screensChanged();

    // Seconds an item stays on screen: the bundle's interval, or a video's duration plus
    // two seconds, clamped to 1 .. 300.
    static double holdSeconds(const BundlePlaybackPreferences &playback, const BundleResolvedAsset *shown);

    qint64 position() const { return m_position; }
    bool paused() const { return m_paused; }
    PlayerStyle style() const { return m_style; }
    QString styleRaw() const { return toRaw(m_style); }
    std::optional<PlayerStyle> chosenStyle() const { return m_chosenStyle; }
    QString currentItemId() const;
    qint64 itemCount() const { return qint64(m_playOrder.size()); }
    const std::vector<qsizetype> &playOrder() const { return m_playOrder; }
    double lastScheduledHold() const { return m_lastScheduledHold; }
    const std::optional<PlayerShownAsset> &shown() const { return m_shown; }
    // What the next advance will show, when it differs from the item on screen.
    std::optional<PlayerShownAsset> upcoming() const;
    const OpenedBundle &bundle() const { return *m_bundle; }

Q_SIGNALS:
    void positionChanged();
    void pausedChanged();
    void styleChanged();
    void itemCountChanged();

private:
    BundleMediaItem *currentItem() const;
    void showCurrent();
    void present(const BundleMediaItem &item, const BundleResolvedAsset &asset);
    void schedule(double seconds);
    void cancelTimer();
    void advance();
    void saveResume();
    void setPosition(qint64 position);
    bool isWallStyle() const { return m_style != PlayerStyle::classic; }
    static PlayerShownAsset shownAsset(const BundleMediaItem &item, const BundleResolvedAsset &asset);

    std::shared_ptr<OpenedBundle> m_bundle;
    PlayerSurface &m_surface;
    TimerScheduler &m_timers;
    SaveResume m_saveResume;
    std::vector<qsizetype> m_playOrder;
    std::optional<TimerScheduler::TimerId> m_timer;
    qint64 m_position = 0;
    bool m_paused = false;
    bool m_pendingVideoFailure = false;
    PlayerStyle m_style = PlayerStyle::classic;
    std::optional<PlayerStyle> m_chosenStyle;
    double m_lastScheduledHold = 0;
    std::optional<PlayerShownAsset> m_shown;
};

} // namespace sorvane
