#include "collage/CollageWallModel.h"

#include "collage/CollageCoordinator.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageVariedTemplate.h"
#include "collage/CollageWall.h"
#include "collage/FlowSeeder.h"
#include "collage/FlowTuning.h"
#include "collage/FlowWallDriver.h"
#include "media/TagManager.h"
#include "slideshow/Clock.h"

#include <QRectF>
#include <QUrl>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <limits>

namespace sorvane {

namespace {

CollageWallSettings wallSettings(const CollageSlideshowSettings &settings)
{
    CollageWallSettings paced;
    paced.imageChangeInterval = settings.imageChangeInterval;
    paced.shuffleVariedLayout = settings.shuffleVariedLayout;
    paced.variedLayoutInterval = settings.variedLayoutInterval;
    paced.flowTilesPerChange
        = int(std::min<qint64>(CollageSlideshowSettings::clampFlowTilesPerChange(settings.flowTilesPerChange),
            qint64(std::numeric_limits<int>::max())));
    paced.flowStaggerSwaps = settings.flowStaggerSwaps;
    return paced;
}

} // namespace

CollageWallModel::CollageWallModel(const Clock &clock, TimerScheduler &timers, quint64 seed, QObject *parent)
    : QObject(parent), m_clock(clock), m_timers(timers), m_seed(seed),
      m_flow(std::make_unique<FlowWallDriver>(clock, timers))
{
}

CollageWallModel::~CollageWallModel()
{
    if (m_ticker)
        m_timers.cancel(*m_ticker);
}

void CollageWallModel::setPool(const QList<ImageItem> &pool, qint64 poolGeneration)
{
    m_pool = pool;
    if (m_poolGeneration != poolGeneration) {
        m_poolGeneration = poolGeneration;
        Q_EMIT poolGenerationChanged();
    }
    if (m_wall)
        build(false);
}

void CollageWallModel::setLayout(CollageLayout layout)
{
    if (layout == m_layout)
        return;
    m_layout = layout;
    Q_EMIT layoutChanged();
    if (m_wall)
        build(false);
}

void CollageWallModel::setRole(CollageRole role)
{
    if (role == m_role)
        return;
    m_role = role;
    Q_EMIT roleChanged();
    if (m_wall) {
        m_wall->setRole(role);
        // A new follower copies the leader's content at once.
        publish();
    }
}

void CollageWallModel::setCoordinator(CollageCoordinator *coordinator)
{
    if (coordinator == m_coordinator)
        return;
    m_coordinator = coordinator;
    // The wall joins its coordinator only when it is built.
    if (m_wall)
        build(false);
}

void CollageWallModel::setSettingsStore(CollageSlideshowSettingsStore *store)
{
    for (QMetaObject::Connection &connection : m_storeConnections)
        QObject::disconnect(connection);
    m_store = store;
    if (store) {
        m_storeConnections[0]
            = connect(store, &CollageSlideshowSettingsStore::settingsChanged, this, &CollageWallModel::applySettings);
        // The per-run flags are not part of the stored settings.
        m_storeConnections[1] = connect(
            store, &CollageSlideshowSettingsStore::flowScrollReversedChanged, this, &CollageWallModel::applySettings);
        m_storeConnections[2] = connect(
            store, &CollageSlideshowSettingsStore::flowScrollPausedChanged, this, &CollageWallModel::applySettings);
    }
    applySettings();
}

void CollageWallModel::setOrientationOverride(std::optional<FlowOrientation> orientation)
{
    if (orientation == m_orientationOverride)
        return;
    m_orientationOverride = orientation;
    applySettings();
}

void CollageWallModel::setViewport(double width, double height)
{
    if (width == m_viewWidth && height == m_viewHeight)
        return;
    m_viewWidth = width;
    m_viewHeight = height;
    layoutFlow();
    publishFlow();
}

void CollageWallModel::setTagManager(TagManager *tags)
{
    for (QMetaObject::Connection &connection : m_tagConnections)
        QObject::disconnect(connection);
    m_tags = tags;
    const auto bump = [this] {
        ++m_tagRevision;
        Q_EMIT tagRevisionChanged();
    };
    if (tags) {
        m_tagConnections[0] = connect(tags, &TagManager::tagsChanged, this, bump);
        m_tagConnections[1] = connect(tags, &TagManager::imageTagsChanged, this, bump);
    }
    bump();
}

void CollageWallModel::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    m_flow->setWallPaused(paused);
    Q_EMIT pausedChanged();
}

void CollageWallModel::setExternalInteractionAt(double at)
{
    if (at == m_externalInteractionAt)
        return;
    m_externalInteractionAt = at;
    if (m_wall)
        m_wall->noteInteraction(at);
    Q_EMIT externalInteractionAtChanged();
}

CollageWallState CollageWallModel::wallState() const
{
    return m_wall ? m_wall->state() : CollageWallState {};
}

bool CollageWallModel::appear()
{
    const bool restored = build(true);
    startTicker();
    return restored;
}

void CollageWallModel::capture()
{
    stopTicker();
    if (m_wall)
        Q_EMIT wallCaptured(m_wall->capture());
}

void CollageWallModel::menuOpened(const QString &menuId)
{
    const bool wasOpen = isMenuOpen();
    m_openMenus.insert(menuId);
    if (!wasOpen)
        Q_EMIT menuOpenChanged();
}

void CollageWallModel::menuClosed(const QString &menuId)
{
    if (m_openMenus.remove(menuId) && m_openMenus.isEmpty())
        Q_EMIT menuOpenChanged();
}

void CollageWallModel::toggleFlowAutoCycle()
{
    if (m_store)
        m_store->toggle(CollageSlideshowSettingsStore::Flag::flowAutoCycleTiles);
}

void CollageWallModel::noteInputEvent(double at)
{
    m_lastInputEventAt = std::max(m_lastInputEventAt, at);
}

bool CollageWallModel::clickTile(int slot, bool rightHalf, double at)
{
    // Compared as an instant, so a click exactly at the end of the guard counts.
    if (at < m_lastInputEventAt + clickInputGuard)
        return false;
    noteInteraction(at);
    return m_wall && m_wall->stepSlot(slot, rightHalf ? CollageWallStep::forward : CollageWallStep::back);
}

bool CollageWallModel::doubleClickTile(int slot)
{
    if (!m_wall || slot < 0 || slot >= m_wall->state().slots.size())
        return false;
    const QUuid item = m_wall->state().slots[slot];
    if (item.isNull())
        return false;
    noteInteraction(m_clock.monotonicSeconds());
    // The host must be able to return to this very wall.
    capture();
    Q_EMIT drillIn(item);
    return true;
}

bool CollageWallModel::doubleClickItem(const QString &itemId)
{
    const QUuid id(itemId);
    if (!m_wall || id.isNull() || !m_wall->item(id))
        return false;
    noteInteraction(m_clock.monotonicSeconds());
    capture();
    Q_EMIT drillIn(id);
    return true;
}

bool CollageWallModel::raiseItem(const QString &itemId)
{
    noteInteraction(m_clock.monotonicSeconds());
    return m_wall && m_wall->raise(QUuid(itemId));
}

QVariantList CollageWallModel::tagsFor(const QString &itemId) const
{
    const ImageItem *item = m_wall ? m_wall->item(QUuid(itemId)) : nullptr;
    if (!item || !m_tags)
        return {};
    QVariantList tags;
    for (const Tag &tag : m_tags->tagsForImage(item->url().toLocalFile()))
        tags.append(QVariantMap {{QStringLiteral("name"), tag.name}, {QStringLiteral("color"), tag.color}});
    return tags;
}

double CollageWallModel::now() const
{
    return m_clock.monotonicSeconds();
}

bool CollageWallModel::step(CollageWallStep step)
{
    noteInteraction(m_clock.monotonicSeconds());
    return m_wall && m_wall->step(step);
}

bool CollageWallModel::changeNow()
{
    if (!m_wall || m_role == CollageRole::mirrorFollower)
        return false;
    noteInteraction(m_clock.monotonicSeconds());
    if (m_layout == CollageLayout::scatter)
        return m_wall->dropNext();
    return m_wall->advance(m_layout == CollageLayout::flow ? m_wall->settings().flowTilesPerChange : 1);
}

QVariantList CollageWallModel::flowOffsets() const
{
    std::vector<double> positions;
    m_flow->positions(positions);
    QVariantList offsets;
    offsets.reserve(qsizetype(positions.size()));
    for (const double position : positions)
        offsets.append(position);
    return offsets;
}

void CollageWallModel::pointerMoved()
{
    if (m_layout == CollageLayout::flow)
        m_flow->pointerMoved();
}

void CollageWallModel::reportAspect(const QString &itemId, double aspect)
{
    const QUuid id(itemId);
    if (!m_wall || id.isNull() || !std::isfinite(aspect) || aspect <= 0)
        return;
    if (m_wall->state().flowAspect.value(id, -1.0) == aspect)
        return;
    m_wall->setAspect(id, aspect);
    publishFlow();
}

void CollageWallModel::tileFailed(const QString &itemId)
{
    const QUuid id(itemId);
    if (m_wall && !id.isNull())
        m_wall->retire(id);
}

bool CollageWallModel::build(bool tryRestore)
{
    // Leave the old wall's coordinator before the new one joins it.
    m_wall.reset();
    m_wall = std::make_unique<CollageWall>(m_layout, m_pool, m_poolGeneration, m_seed, m_role, m_coordinator.data());
    applySettings();
    m_wall->noteInteraction(m_lastInteractionAt);
    m_wall->noteInteraction(m_externalInteractionAt);
    const bool restored = tryRestore && m_restoreWall && m_wall->restore(*m_restoreWall);
    m_wall->setChangeHandler([this](CollageMutationKind kind, const CollageAnimation &animation) {
        publish();
        Q_EMIT wallChanged(kind, animation);
    });
    layoutFlow();
    publish();
    return restored;
}

void CollageWallModel::startTicker()
{
    if (m_ticker)
        return;
    m_lastTickAt = m_clock.monotonicSeconds();
    m_ticker = m_timers.scheduleRepeating(heartbeat, [this] { onTick(); });
    Q_EMIT runningChanged();
}

void CollageWallModel::stopTicker()
{
    if (!m_ticker)
        return;
    m_timers.cancel(*m_ticker);
    m_ticker.reset();
    Q_EMIT runningChanged();
}

void CollageWallModel::onTick()
{
    const double now = m_clock.monotonicSeconds();
    const double elapsed = std::max(0.0, now - m_lastTickAt);
    m_lastTickAt = now;
    if (!m_wall)
        return;
    const bool holdStill = m_paused || isMenuOpen();
    m_wall->tick(elapsed, now, holdStill);
    // Auto-cycling replaces tiles while the strips scroll, between the timed changes.
    if (m_layout == CollageLayout::flow && !holdStill && m_role != CollageRole::mirrorFollower
        && m_flow->autoCycleDue(elapsed))
        m_wall->advance(1);
}

void CollageWallModel::noteInteraction(double at)
{
    if (m_wall)
        m_wall->noteInteraction(at);
    if (at <= m_lastInteractionAt)
        return;
    m_lastInteractionAt = at;
    Q_EMIT lastInteractionAtChanged();
}

void CollageWallModel::applySettings()
{
    const CollageSlideshowSettings settings = m_store ? m_store->settings() : CollageSlideshowSettings {};
    if (settings.showTileHoverControls != m_showHoverControls) {
        m_showHoverControls = settings.showTileHoverControls;
        Q_EMIT showHoverControlsChanged();
    }
    if (settings.flowAutoCycleTiles != m_autoCycling) {
        m_autoCycling = settings.flowAutoCycleTiles;
        Q_EMIT autoCyclingChanged();
    }
    m_flow->setSettings(settings, m_store && m_store->flowScrollReversed(), m_store && m_store->flowScrollPaused(),
        m_orientationOverride);
    if (!m_wall)
        return;
    m_wall->setSettings(m_store ? wallSettings(settings) : CollageWallSettings {});
    // A new column adjustment or orientation reseeds the strips.
    layoutFlow();
    publishFlow();
}

void CollageWallModel::layoutFlow()
{
    if (!m_wall || m_layout != CollageLayout::flow)
        return;
    const FlowLayoutInput input = m_flow->layoutInput(m_viewWidth, m_viewHeight);
    const CollageWallState &state = m_wall->state();
    if (!FlowSeeder::needsReseed(
            state.flowSeededWidth, state.flowSeededHeight, state.flowSeededColumns, state.flowOrientation, input))
        return;
    const FlowSeedResult result = FlowSeeder::seed(input, m_pool.size(), [this](int slot) {
        const QUuid item = m_wall->flowSlotItem(slot);
        return m_wall->state().flowAspect.value(item, FlowTuning::flowDefaultAspect);
    });
    if (result.columns != m_flowColumnCount) {
        m_flowColumnCount = result.columns;
        Q_EMIT flowColumnCountChanged();
    }
    if (result.seed) {
        const FlowSeed &seed = *result.seed;
        m_wall->seedFlow(seed.flowColumnOf, seed.flowSeededWidth, seed.flowSeededHeight, seed.flowSeededColumns,
            seed.flowOrientation);
    }
}

void CollageWallModel::publishFlow()
{
    QVariantList strips;
    if (m_wall && m_layout == CollageLayout::flow) {
        const CollageWallState &state = m_wall->state();
        m_flow->update(state, m_viewWidth, m_viewHeight);
        for (const FlowScrollColumn &column : m_flow->columns()) {
            QVariantList tiles;
            for (size_t k = 0; k < column.itemIds.size(); ++k) {
                const ImageItem *item = m_wall->item(column.itemIds[k]);
                tiles.append(QVariantMap {{QStringLiteral("slot"), column.slotIndices[k]},
                    {QStringLiteral("itemId"), column.itemIds[k].toString(QUuid::WithoutBraces)},
                    {QStringLiteral("url"), item ? item->url() : QUrl()},
                    {QStringLiteral("start"), column.tileStart(k)},
                    {QStringLiteral("length"), column.tileLengths()[k]}});
            }
            strips.append(QVariantMap {{QStringLiteral("index"), column.columnIndex},
                {QStringLiteral("thickness"), column.columnWidth},
                {QStringLiteral("crossStart"),
                    column.spacing + column.columnIndex * (column.columnWidth + column.spacing)},
                {QStringLiteral("cycle"), column.cycleLength()}, {QStringLiteral("copies"), column.copies},
                {QStringLiteral("horizontal"), column.horizontal}, {QStringLiteral("tiles"), tiles}});
        }
    }
    if (strips != m_flowStrips) {
        m_flowStrips = strips;
        Q_EMIT flowStripsChanged();
    }
}

void CollageWallModel::publish()
{
    const CollageWallState &state = m_wall->state();

    QVariantList tiles;
    for (qsizetype slot = 0; slot < state.slots.size(); ++slot) {
        const QUuid &id = state.slots[slot];
        const ImageItem *item = m_wall->item(id);
        tiles.append(QVariantMap {{QStringLiteral("slot"), int(slot)},
            {QStringLiteral("itemId"), id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("url"), item ? item->url() : QUrl()}});
    }
    if (tiles != m_tiles) {
        m_tiles = tiles;
        Q_EMIT tilesChanged();
    }

    QVariantList drops;
    for (const CollageDrop &drop : state.drops) {
        drops.append(QVariantMap {{QStringLiteral("itemId"), drop.item.id().toString(QUuid::WithoutBraces)},
            {QStringLiteral("url"), drop.item.url()}, {QStringLiteral("x"), drop.unit.x()},
            {QStringLiteral("y"), drop.unit.y()}, {QStringLiteral("rotation"), drop.rotation},
            {QStringLiteral("scale"), drop.scale}});
    }
    if (drops != m_drops) {
        m_drops = drops;
        Q_EMIT dropsChanged();
    }

    if (state.variantIndex != m_variantIndex) {
        m_variantIndex = state.variantIndex;
        Q_EMIT variantIndexChanged();
    }

    QVariantList rects;
    if (state.layout == CollageLayout::collage) {
        for (const QRectF &rect : CollageVariedTemplate::variant(state.variantIndex))
            rects.append(rect);
    }
    if (rects != m_variedRects) {
        m_variedRects = rects;
        Q_EMIT variedRectsChanged();
    }
    publishFlow();
}

} // namespace sorvane
