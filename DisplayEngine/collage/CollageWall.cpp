#include "collage/CollageWall.h"

#include "collage/CollageVariedTemplate.h"
#include "collage/ScatterPile.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace sorvane {

namespace {

// How the wall that made a change animates it: like a follower, except that its own
// new Scatter photo lands with a spring.
CollageAnimation localAnimation(CollageMutationKind kind)
{
    return kind == CollageMutationKind::scatterDrop ? CollageAnimation::scatterDrop()
                                                    : CollageAnimation::mirrored(kind);
}

} // namespace

CollageWall::CollageWall(CollageLayout layout, QList<ImageItem> pool, qint64 poolGeneration, quint64 seed,
    CollageRole role, CollageCoordinator *coordinator)
    : m_deck(std::move(pool)), m_random(seed), m_role(role), m_coordinator(coordinator)
{
    m_state.layout = layout;
    m_state.poolGeneration = poolGeneration;
    if (isVaried()) {
        for (int slot = 0; slot < CollageVariedTemplate::slotCount; ++slot) {
            const std::optional<ImageItem> item = m_deck.deal(onScreen(), m_random);
            if (!item)
                break;
            m_state.slots.append(item->id());
        }
    } else if (layout == CollageLayout::scatter) {
        // One photo at once, so the table is not bare until the first change.
        if (const std::optional<CollageDrop> drop = newDrop())
            m_state.drops.append(*drop);
    }
    m_slotHistory.resize(m_state.slots.size());
    attach();
    if (m_role == CollageRole::mirrorLeader)
        publishContent();
}

CollageWall::~CollageWall()
{
    detach();
}

bool CollageWall::restore(const CollageWallState &state)
{
    if (state.poolGeneration != m_state.poolGeneration || state.layout != m_state.layout)
        return false;
    m_state = state;
    m_slotHistory = {};
    m_slotHistory.resize(m_state.slots.size());
    m_lifted.clear();
    if (m_role == CollageRole::mirrorLeader)
        publishContent();
    if (m_onChange)
        m_onChange(contentKind(), {});
    return true;
}

void CollageWall::setRole(CollageRole role)
{
    if (role == m_role)
        return;
    detach();
    m_role = role;
    attach();
    if (m_role == CollageRole::mirrorLeader)
        publishContent();
}

void CollageWall::seedFlow(
    const QList<int> &columnOf, double width, double height, int columns, FlowOrientation orientation)
{
    if (m_state.layout != CollageLayout::flow)
        return;
    m_state.flowColumnOf = columnOf;
    m_state.flowSeededWidth = width;
    m_state.flowSeededHeight = height;
    m_state.flowSeededColumns = columns;
    m_state.flowOrientation = orientation;

    const qsizetype count = columnOf.size();
    if (m_state.slots.size() > count)
        m_state.slots.resize(count);
    if (count > 0)
        flowSlotItem(count - 1);
    m_slotHistory.resize(m_state.slots.size());
    m_advanceIndex = 0;
    changed(CollageMutationKind::advanceSlot);
}

QUuid CollageWall::flowSlotItem(qsizetype slot)
{
    if (slot < 0 || m_state.layout != CollageLayout::flow)
        return {};
    while (m_state.slots.size() <= slot) {
        const std::optional<ImageItem> item = m_deck.deal(onScreen(), m_random);
        if (!item)
            break;
        m_state.slots.append(item->id());
    }
    m_slotHistory.resize(m_state.slots.size());
    return slot < m_state.slots.size() ? m_state.slots[slot] : QUuid {};
}

void CollageWall::tick(double elapsed, double now, bool holdStill)
{
    if (holdStill || m_role == CollageRole::mirrorFollower)
        return;
    const CollageWallClock::Due due = m_clock.advance(elapsed, now, m_settings, m_state.layout);
    for (int i = 0; i < due.changes; ++i) {
        if (m_state.layout == CollageLayout::scatter)
            dropNext();
        else
            advance(due.slotsPerChange);
    }
    if (due.reshuffle)
        reshuffleVariant();
}

bool CollageWall::advance(int slotCount)
{
    QSet<QUuid> shown = onScreen();
    QList<CollageSlotSwap> swaps;
    for (const qsizetype slot : slotsToAdvance(slotCount)) {
        const QUuid outgoing = m_state.slots[slot];
        const std::optional<ImageItem> incoming = m_deck.deal(shown, m_random);
        // A pool no larger than the wall can deal the same item back; that is no change.
        if (!incoming || incoming->id() == outgoing)
            continue;
        shown.insert(incoming->id());
        swaps.append({slot, outgoing, incoming->id()});
    }
    if (swaps.isEmpty())
        return false;

    m_history.beginBatch();
    for (const CollageSlotSwap &swap : std::as_const(swaps)) {
        m_history.record(swap);
        m_state.slots[swap.slot] = swap.incoming;
        m_slotHistory.pushOutgoing(swap.slot, swap.outgoing);
    }
    changed(CollageMutationKind::advanceSlot);
    return true;
}

bool CollageWall::reshuffleVariant()
{
    if (!isVaried())
        return false;
    m_state.variantIndex = CollageVariedTemplate::nextVariant(m_state.variantIndex, m_random);
    changed(CollageMutationKind::reshuffleVariant);
    return true;
}

bool CollageWall::dropNext()
{
    if (m_state.layout != CollageLayout::scatter)
        return false;
    const std::optional<CollageDrop> drop = newDrop();
    if (!drop)
        return false;
    m_state.drops = ScatterPile::appending(*drop, m_state.drops);
    m_lifted.clear();
    changed(CollageMutationKind::scatterDrop);
    return true;
}

bool CollageWall::raise(const QUuid &item)
{
    const QList<CollageDrop> &drops = m_state.drops;
    const auto found
        = std::find_if(drops.cbegin(), drops.cend(), [&](const CollageDrop &d) { return d.item.id() == item; });
    if (found == drops.cend() || found == drops.cend() - 1)
        return false;
    m_state.drops = ScatterPile::raising(item, m_state.drops);
    changed(CollageMutationKind::reorderDrop);
    return true;
}

bool CollageWall::step(CollageWallStep step)
{
    if (m_state.layout == CollageLayout::scatter) {
        if (step == CollageWallStep::back) {
            if (m_state.drops.isEmpty())
                return false;
            m_lifted.append(m_state.drops.last());
            m_state.drops = ScatterPile::lifting(m_state.drops);
        } else {
            if (m_lifted.isEmpty())
                return false;
            m_state.drops = ScatterPile::appending(m_lifted.takeLast(), m_state.drops);
        }
        changed(CollageMutationKind::scatterDrop);
        return true;
    }

    const std::optional<CollageWallHistory::Batch> batch
        = step == CollageWallStep::back ? m_history.stepBack() : m_history.stepForward();
    if (!batch)
        return false;
    applyBatch(*batch, step);
    changed(CollageMutationKind::advanceSlot);
    return true;
}

bool CollageWall::stepSlot(qsizetype slot, CollageWallStep step)
{
    if (slot < 0 || slot >= m_state.slots.size())
        return false;
    const QUuid current = m_state.slots[slot];
    std::optional<QUuid> next;
    if (step == CollageWallStep::back) {
        next = m_slotHistory.stepBack(slot, current);
    } else {
        next = m_slotHistory.stepForward(slot, current);
        if (!next) {
            const std::optional<ImageItem> item = m_deck.deal(onScreen(), m_random);
            if (item && item->id() != current) {
                m_slotHistory.pushOutgoing(slot, current);
                next = item->id();
            }
        }
    }
    if (!next)
        return false;
    m_state.slots[slot] = *next;
    changed(CollageMutationKind::advanceSlot);
    return true;
}

bool CollageWall::retire(const QUuid &item)
{
    m_deck.retire(item);
    bool changedWall = false;
    for (qsizetype slot = 0; slot < m_state.slots.size(); ++slot) {
        if (m_state.slots[slot] != item)
            continue;
        const std::optional<ImageItem> incoming = m_deck.deal(onScreen(), m_random);
        m_state.slots[slot] = incoming ? incoming->id() : QUuid();
        changedWall = true;
    }
    // A photo that cannot be drawn is simply taken off the table.
    if (m_state.drops.removeIf([&item](const CollageDrop &drop) { return drop.item.id() == item; }) > 0)
        changedWall = true;
    if (changedWall)
        changed(contentKind());
    return changedWall;
}

bool CollageWall::isVaried() const
{
    // Varied is the one layout that is neither of the others.
    return m_state.layout != CollageLayout::flow && m_state.layout != CollageLayout::scatter;
}

CollageMutationKind CollageWall::contentKind() const
{
    return m_state.layout == CollageLayout::scatter ? CollageMutationKind::scatterDrop
                                                    : CollageMutationKind::advanceSlot;
}

QSet<QUuid> CollageWall::onScreen() const
{
    QSet<QUuid> shown(m_state.slots.cbegin(), m_state.slots.cend());
    for (const CollageDrop &drop : m_state.drops)
        shown.insert(drop.item.id());
    return shown;
}

std::optional<CollageDrop> CollageWall::newDrop()
{
    const std::optional<ImageItem> item = m_deck.deal(onScreen(), m_random);
    if (!item)
        return std::nullopt;
    return ScatterPile::dropping(*item, m_state.drops, m_random);
}

QList<qsizetype> CollageWall::slotsToAdvance(int count)
{
    const qsizetype slotCount = m_state.slots.size();
    const qsizetype wanted = std::min<qsizetype>(std::max(count, 0), slotCount);
    QList<qsizetype> chosen;
    if (wanted == 0)
        return chosen;
    if (m_state.layout != CollageLayout::flow) {
        for (qsizetype i = 0; i < wanted; ++i) {
            m_advanceIndex %= slotCount;
            chosen.append(m_advanceIndex++);
        }
        return chosen;
    }
    // Flow: distinct slots at random, by a partial shuffle of all of them.
    QList<qsizetype> all(slotCount);
    std::iota(all.begin(), all.end(), qsizetype(0));
    for (qsizetype i = 0; i < wanted; ++i) {
        const auto j = i + qsizetype(m_random.next(quint32(slotCount - i)));
        std::swap(all[i], all[j]);
    }
    return all.first(wanted);
}

void CollageWall::applyBatch(const CollageWallHistory::Batch &batch, CollageWallStep step)
{
    // Undo last swap first, so a slot swapped twice in one batch ends at its first item.
    const bool back = step == CollageWallStep::back;
    for (qsizetype i = 0; i < batch.size(); ++i) {
        const CollageSlotSwap &swap = batch[back ? batch.size() - 1 - i : i];
        // A reseeded Flow wall may have fewer slots than when the swap was made.
        if (swap.slot < 0 || swap.slot >= m_state.slots.size())
            continue;
        const QUuid &from = back ? swap.incoming : swap.outgoing;
        const QUuid &to = back ? swap.outgoing : swap.incoming;
        m_state.slots[swap.slot] = to;
        // Keep the slot's own history in step when it still reads the same way, so a
        // click on "previous" afterwards does not show the item that is already there.
        const QList<QUuid> behind = back ? m_slotHistory.earlier(swap.slot) : m_slotHistory.later(swap.slot);
        if (!behind.isEmpty() && behind.last() == to) {
            if (back)
                m_slotHistory.stepBack(swap.slot, from);
            else
                m_slotHistory.stepForward(swap.slot, from);
        }
    }
}

void CollageWall::changed(CollageMutationKind kind)
{
    if (m_role == CollageRole::mirrorLeader && m_coordinator)
        m_coordinator->broadcast(m_state.slots, m_state.drops, m_state.variantIndex, kind);
    if (m_onChange)
        m_onChange(kind, localAnimation(kind));
}

void CollageWall::publishContent()
{
    if (!m_coordinator)
        return;
    const CollageMutationKind kind = m_state.layout == CollageLayout::scatter ? CollageMutationKind::scatterDrop
                                                                              : CollageMutationKind::advanceSlot;
    m_coordinator->broadcast(m_state.slots, m_state.drops, m_state.variantIndex, kind);
}

void CollageWall::attach()
{
    if (m_role != CollageRole::mirrorFollower || !m_coordinator)
        return;
    m_follower = m_coordinator->attachFollower();
    m_mirrorConnection
        = QObject::connect(m_coordinator.data(), &CollageCoordinator::mirrorChanged, [this] { followMirror(); });
    // A leader that broadcast before this follower joined is followed at once.
    followMirror();
}

void CollageWall::detach()
{
    QObject::disconnect(m_mirrorConnection);
    if (m_follower && m_coordinator)
        m_coordinator->detachFollower(*m_follower);
    m_follower.reset();
}

void CollageWall::followMirror()
{
    if (!m_follower || !m_coordinator)
        return;
    const std::optional<CollageBroadcast> mirror = m_coordinator->consume(*m_follower);
    if (!mirror)
        return;
    // Items that leave a slot stay reachable from that slot's "previous", as on the leader.
    if (mirror->slots.size() == m_state.slots.size()) {
        for (qsizetype slot = 0; slot < m_state.slots.size(); ++slot) {
            if (m_state.slots[slot] != mirror->slots[slot])
                m_slotHistory.pushOutgoing(slot, m_state.slots[slot]);
        }
    } else {
        m_slotHistory = {};
        m_slotHistory.resize(mirror->slots.size());
    }
    m_state.slots = mirror->slots;
    m_state.drops = mirror->drops;
    m_state.variantIndex = mirror->variantIndex;
    m_lifted.clear();
    if (m_onChange)
        m_onChange(mirror->kind, CollageAnimation::mirrored(mirror->kind));
}

} // namespace sorvane
