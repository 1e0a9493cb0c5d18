#include "core/PlayerCollageWall.h"

#include "bundle/BundleFormat.h"
#include "bundle/OpenedBundle.h"
#include "collage/CollageWallModel.h"
#include "collage/CollageWallStep.h"
#include "media/VideoExtensions.h"
#include "slideshow/Clock.h"

#include <QFileInfo>

namespace sorvane {

namespace {

InMemoryPreferences &seeded(InMemoryPreferences &preferences, const CollageSlideshowSettings &settings)
{
    settings.save(preferences);
    return preferences;
}

} // namespace

PlayerCollageWall::PlayerCollageWall(OpenedBundle &bundle, const CollageSlideshowSettings &viewerSettings,
    const Clock &clock, TimerScheduler &timers, QObject *parent)
    : QObject(parent), m_clock(clock), m_timers(timers),
      m_store(seeded(m_preferences, CollageSlideshowSettings::forBundle(bundle.playback, viewerSettings))),
      m_bundleLayout(bundle.playback.collageLayout), m_seed(bundle.generator().next())
{
    for (const qsizetype index : bundle.playOrder()) {
        const BundleMediaItem &item = *bundle.items[size_t(index)];
        // Tiles want the small copies; a video shows its poster still, or stays off the wall.
        const std::optional<QUrl> url = item.url(BundleFormat::tierTile);
        if (!url || VideoExtensions::tierFor(QFileInfo(url->toLocalFile()).suffix().toLower()))
            continue;
        ImageItem still(*url, {}, qint64(index));
        m_bundleItemOf.insert(still.id(), item.id);
        m_pool.append(std::move(still));
    }
}

PlayerCollageWall::~PlayerCollageWall()
{
    release();
    qDeleteAll(m_retired);
}

std::optional<CollageLayout> PlayerCollageWall::layoutFor(PlayerStyle style, CollageLayout bundleLayout)
{
    switch (style) {
    case PlayerStyle::photoWall:
        // The photo wall is the bundle's wall of tiles; the table is the other style.
        return bundleLayout == CollageLayout::scatter ? CollageLayout::flow : bundleLayout;
    case PlayerStyle::memoryTable:
        return CollageLayout::scatter;
    case PlayerStyle::classic:
        break;
    }
    return std::nullopt;
}

std::optional<CollageLayout> PlayerCollageWall::layoutFor(PlayerStyle style) const
{
    return layoutFor(style, m_bundleLayout);
}

QList<CollageWallModel *> PlayerCollageWall::wallsFor(PlayerStyle style, int screenCount)
{
    release();
    const std::optional<CollageLayout> layout = layoutFor(style);
    if (!layout)
        return {};
    for (int screen = 0; screen < screenCount; ++screen) {
        // Each screen draws its own wall: same photos, another deal.
        auto *wall = new CollageWallModel(m_clock, m_timers, m_seed + quint64(screen) * 0x9e3779b97f4a7c15ull);
        wall->setSettingsStore(&m_store);
        wall->setLayout(*layout);
        wall->setPool(m_pool, 1);
        wall->setPaused(m_paused);
        wall->setRestoreWall(m_left.value(screen).contains(*layout)
                ? std::optional<CollageWallState>(m_left.value(screen).value(*layout))
                : std::nullopt);
        connect(wall, &CollageWallModel::wallCaptured, this,
            [this, screen](const CollageWallState &state) { m_left[screen].insert(state.layout, state); });
        connect(wall, &CollageWallModel::drillIn, this, [this](const QUuid &item) {
            const QString bundleItem = m_bundleItemOf.value(item);
            if (!bundleItem.isEmpty())
                Q_EMIT openItem(bundleItem);
        });
        m_walls.append(wall);
    }
    return m_walls;
}

void PlayerCollageWall::step(int delta)
{
    for (CollageWallModel *wall : std::as_const(m_walls)) {
        // Forward with nothing to redo brings the next photos now, as "next" does everywhere else.
        if (!wall->step(delta < 0 ? CollageWallStep::back : CollageWallStep::forward) && delta > 0)
            wall->changeNow();
    }
}

void PlayerCollageWall::setPaused(bool paused)
{
    m_paused = paused;
    for (CollageWallModel *wall : std::as_const(m_walls))
        wall->setPaused(paused);
}

void PlayerCollageWall::noteInput()
{
    const double now = m_clock.monotonicSeconds();
    for (CollageWallModel *wall : std::as_const(m_walls)) {
        wall->setExternalInteractionAt(now);
        wall->noteInputEvent(now);
    }
}

void PlayerCollageWall::tileShown()
{
    if (m_tileShown)
        return;
    m_tileShown = true;
    Q_EMIT firstTileShown();
}

void PlayerCollageWall::release()
{
    // Views let go of their walls only when their windows are gone, some time after this;
    // a wall is deleted one change later, idle (captured) until then.
    qDeleteAll(m_retired);
    m_retired.clear();
    for (CollageWallModel *wall : std::as_const(m_walls)) {
        // Captured now, so the next wall of this screen starts from here.
        wall->capture();
        m_retired.append(wall);
    }
    m_walls.clear();
}

} // namespace sorvane
