#include "core/PlayerEngine.h"

#include "EngineLog.h"
#include "bundle/BundleFormat.h"

#include <algorithm>
#include <cmath>

namespace sorvane {

PlayerEngine::PlayerEngine(std::shared_ptr<OpenedBundle> bundle, PlayerSurface &surface, TimerScheduler &timers,
    SaveResume saveResume, QObject *parent)
    : QObject(parent), m_bundle(std::move(bundle)), m_surface(surface), m_timers(timers),
      m_saveResume(std::move(saveResume))
{
}

PlayerEngine::~PlayerEngine()
{
    cancelTimer();
}

double PlayerEngine::holdSeconds(const BundlePlaybackPreferences &playback, const BundleResolvedAsset *shown)
{
    double hold = playback.intervalSecondsOrDefault();
    if (shown && shown->key == BundleFormat::tierVideo && shown->asset.durationSeconds
        && std::isfinite(*shown->asset.durationSeconds) && *shown->asset.durationSeconds > 0)
        hold = *shown->asset.durationSeconds + 2.0;
    if (!std::isfinite(hold))
        hold = 5.0;
    return std::clamp(hold, 1.0, 300.0);
}

void PlayerEngine::start(const Start &resume)
{
    m_playOrder = m_bundle->playOrder();
    Q_EMIT itemCountChanged();
    if (resume.resumePosition && *resume.resumePosition >= 0 && *resume.resumePosition < qint64(m_playOrder.size()))
        setPosition(*resume.resumePosition);
    else
        setPosition(0);
    if (resume.resumeStyle) {
        // A style picked in an earlier run stays the viewer's pick until another one.
        m_style = *resume.resumeStyle;
        m_chosenStyle = resume.resumeStyle;
        Q_EMIT styleChanged();
    }
    m_surface.presentStyle(m_style);
    // A wall runs itself; the classic style starts at the resumed item.
    if (!isWallStyle())
        showCurrent();
}

void PlayerEngine::stop()
{
    cancelTimer();
}

QString PlayerEngine::currentItemId() const
{
    const BundleMediaItem *item = currentItem();
    return item ? item->id : QString();
}

BundleMediaItem *PlayerEngine::currentItem() const
{
    if (m_playOrder.empty())
        return nullptr;
    // A position at or beyond the end reads as the first item.
    const qint64 at = m_position < qint64(m_playOrder.size()) ? m_position : 0;
    return m_bundle->items[size_t(m_playOrder[size_t(at)])].get();
}

void PlayerEngine::setPosition(qint64 position)
{
    if (position == m_position)
        return;
    m_position = position;
    Q_EMIT positionChanged();
}

PlayerShownAsset PlayerEngine::shownAsset(const BundleMediaItem &item, const BundleResolvedAsset &asset)
{
    PlayerShownAsset shown;
    shown.itemId = item.id;
    shown.tier = asset.key;
    shown.url = asset.url();
    shown.isVideo = asset.key == BundleFormat::tierVideo;
    shown.isAnimated = asset.key == BundleFormat::tierAnimated;
    return shown;
}

void PlayerEngine::present(const BundleMediaItem &item, const BundleResolvedAsset &asset)
{
    m_shown = shownAsset(item, asset);
    m_surface.show(*m_shown);
    schedule(holdSeconds(m_bundle->playback, &asset));
    saveResume();
    if (auto next = upcoming())
        m_surface.preload(*next);
}

std::optional<PlayerShownAsset> PlayerEngine::upcoming() const
{
    if (m_playOrder.size() < 2)
        return std::nullopt;
    const qint64 at = m_position < qint64(m_playOrder.size()) ? m_position : 0;
    const BundleMediaItem &item = *m_bundle->items[size_t(m_playOrder[size_t((at + 1) % qint64(m_playOrder.size()))])];
    const BundleResolvedAsset *asset = item.displayAsset();
    if (!asset)
        return std::nullopt;
    return shownAsset(item, *asset);
}

void PlayerEngine::showCurrent()
{
    const BundleMediaItem *item = currentItem();
    if (!item)
        return;
    const BundleResolvedAsset *asset = item->displayAsset();
    if (!asset)
        return;
    present(*item, *asset);
}

void PlayerEngine::schedule(double seconds)
{
    cancelTimer();
    m_lastScheduledHold = seconds;
    m_timer = m_timers.scheduleOnce(seconds, [this] {
        m_timer.reset();
        advance();
    });
}

void PlayerEngine::cancelTimer()
{
    if (m_timer) {
        m_timers.cancel(*m_timer);
        m_timer.reset();
    }
}

void PlayerEngine::advance()
{
    if (m_paused || m_playOrder.empty())
        return;
    // Always wraps: a stick left running keeps showing photos, whatever the manifest's loop says.
    setPosition((m_position + 1) % qint64(m_playOrder.size()));
    showCurrent();
}

void PlayerEngine::saveResume()
{
    if (m_saveResume)
        m_saveResume(m_position, m_chosenStyle);
}

void PlayerEngine::togglePause()
{
    if (!m_paused) {
        cancelTimer();
        m_surface.pauseVideo();
        m_paused = true;
    } else {
        m_paused = false;
        m_surface.resumeVideo();
        const BundleMediaItem *item = currentItem();
        if (!isWallStyle())
            schedule(holdSeconds(m_bundle->playback, item ? item->displayAsset() : nullptr));
    }
    Q_EMIT pausedChanged();
}

void PlayerEngine::step(int delta)
{
    if (m_playOrder.empty())
        return;
    if (isWallStyle()) {
        m_surface.stepWall(delta);
        return;
    }
    const qint64 n = qint64(m_playOrder.size());
    setPosition(((m_position + delta) % n + n) % n);
    showCurrent();
    // A step taken while paused shows the new item and stays paused.
    if (m_paused) {
        cancelTimer();
        m_surface.pauseVideo();
    }
}

void PlayerEngine::chooseStyle(PlayerStyle style)
{
    if (style == m_style)
        return;
    cancelTimer();
    m_style = style;
    m_chosenStyle = style;
    Q_EMIT styleChanged();
    saveResume();
    m_surface.presentStyle(style);
    // The classic style shows the current item and its hold again; walls run themselves.
    if (!isWallStyle() && !m_paused)
        showCurrent();
}

void PlayerEngine::screensChanged()
{
    m_surface.presentStyle(m_style);
    if (!isWallStyle() && m_shown)
        m_surface.show(*m_shown);
}

bool PlayerEngine::openFromWall(const QString &itemId)
{
    const auto at = std::find_if(m_playOrder.cbegin(), m_playOrder.cend(),
        [&](qsizetype index) { return m_bundle->items[size_t(index)]->id == itemId; });
    if (at == m_playOrder.cend())
        return false;
    setPosition(qint64(at - m_playOrder.cbegin()));
    if (m_style == PlayerStyle::classic)
        showCurrent();
    else
        chooseStyle(PlayerStyle::classic);
    return true;
}

void PlayerEngine::videoEnded()
{
    if (isWallStyle() || !m_shown || !m_shown->isVideo)
        return;
    advance();
}

void PlayerEngine::videoFailed()
{
    if (isWallStyle() || m_pendingVideoFailure || !m_shown)
        return;
    m_pendingVideoFailure = true;
    const PlayerShownAsset failed = *m_shown;
    if (m_bundle->markUndecodable(failed.itemId, failed.tier)) {
        // The next rung of the same item; the position stays.
        const BundleMediaItem *item = m_bundle->item(failed.itemId);
        if (const BundleResolvedAsset *asset = item ? item->resolvedAsset(BundleFormat::tierFull) : nullptr)
            present(*item, *asset);
    } else {
        const qint64 at = m_position < qint64(m_playOrder.size()) ? m_position : 0;
        m_playOrder.erase(m_playOrder.begin() + at);
        Q_EMIT itemCountChanged();
        if (m_playOrder.empty()) {
            // Nothing left to play: the last picture stays on screen.
            cancelTimer();
        } else {
            setPosition(m_position % qint64(m_playOrder.size()));
            showCurrent();
        }
    }
    m_pendingVideoFailure = false;
}

} // namespace sorvane
