#include "collage/CollageWallHistory.h"

#include <algorithm>

namespace sorvane {

CollageWallHistory::CollageWallHistory(qsizetype depth) : m_depth(std::max<qsizetype>(depth, 1)) { }

void CollageWallHistory::beginBatch()
{
    m_forward.clear();
    append({});
}

void CollageWallHistory::record(const CollageSlotSwap &swap)
{
    if (m_batches.isEmpty())
        beginBatch();
    m_batches.last().append(swap);
}

std::optional<CollageWallHistory::Batch> CollageWallHistory::stepBack()
{
    if (m_batches.isEmpty())
        return std::nullopt;
    Batch batch = m_batches.takeLast();
    m_forward.append(batch);
    return batch;
}

std::optional<CollageWallHistory::Batch> CollageWallHistory::stepForward()
{
    if (m_forward.isEmpty())
        return std::nullopt;
    Batch batch = m_forward.takeLast();
    append(batch);
    return batch;
}

void CollageWallHistory::append(Batch batch)
{
    m_batches.append(std::move(batch));
    if (m_batches.size() > m_depth)
        m_batches.remove(0, m_batches.size() - m_depth);
}

} // namespace sorvane
