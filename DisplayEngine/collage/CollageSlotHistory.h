#pragma once

#include <QList>
#include <QUuid>

#include <optional>

namespace sorvane {

// Per slot, the items that showed there before (for "previous" on a tile) and the
// ones stepped back over (for "next"), each list kept to `slotHistoryDepth`.
class CollageSlotHistory {
public:
    static constexpr qsizetype slotHistoryDepth = 24;

    // Keeps the lists of the slots that remain; new slots start empty.
    void resize(qsizetype slotCount);
    qsizetype slotCount() const { return m_earlier.size(); }

    // Oldest first; empty for a slot out of range.
    QList<QUuid> earlier(qsizetype slot) const;
    QList<QUuid> later(qsizetype slot) const;

    // `outgoing` left the slot for a new item: remember it, and forget what lay ahead.
    void pushOutgoing(qsizetype slot, const QUuid &outgoing);
    // The item that showed before `current`, which is kept for stepping forward; nothing
    // when there is none.
    std::optional<QUuid> stepBack(qsizetype slot, const QUuid &current);
    // The item stepped back over, `current` becoming the one before it; nothing when there
    // is none (the caller then brings a new item with pushOutgoing).
    std::optional<QUuid> stepForward(qsizetype slot, const QUuid &current);

private:
    bool contains(qsizetype slot) const { return slot >= 0 && slot < m_earlier.size(); }
    static void pushCapped(QList<QUuid> &list, const QUuid &id);

    QList<QList<QUuid>> m_earlier;
    QList<QList<QUuid>> m_later;
};

} // namespace sorvane
