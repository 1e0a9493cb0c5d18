#include "collage/CollageSlotHistory.h"

#include <algorithm>

namespace sorvane {

void CollageSlotHistory::resize(qsizetype slotCount)
{
    const qsizetype count = std::max<qsizetype>(slotCount, 0);
    m_earlier.resize(count);
    m_later.resize(count);
}

QList<QUuid> CollageSlotHistory::earlier(qsizetype slot) const
{
    return contains(slot) ? m_earlier[slot] : QList<QUuid> {};
}

QList<QUuid> CollageSlotHistory::later(qsizetype slot) const
{
    return contains(slot) ? m_later[slot] : QList<QUuid> {};
}

void CollageSlotHistory::pushOutgoing(qsizetype slot, const QUuid &outgoing)
{
    if (!contains(slot))
        return;
    pushCapped(m_earlier[slot], outgoing);
    m_later[slot].clear();
}

std::optional<QUuid> CollageSlotHistory::stepBack(qsizetype slot, const QUuid &current)
{
    if (!contains(slot) || m_earlier[slot].isEmpty())
        return std::nullopt;
    pushCapped(m_later[slot], current);
    return m_earlier[slot].takeLast();
}

std::optional<QUuid> CollageSlotHistory::stepForward(qsizetype slot, const QUuid &current)
{
    if (!contains(slot) || m_later[slot].isEmpty())
        return std::nullopt;
    pushCapped(m_earlier[slot], current);
    return m_later[slot].takeLast();
}

void CollageSlotHistory::pushCapped(QList<QUuid> &list, const QUuid &id)
{
    list.append(id);
    if (list.size() > slotHistoryDepth)
        list.remove(0, list.size() - slotHistoryDepth);
}

} // namespace sorvane
