#include "media/LoadManager.h"

#include "EngineLog.h"

#include <algorithm>
#include <utility>

namespace sorvane {

LoadManager::LoadManager(int maxConcurrentLoads) : m_maxConcurrentLoads(std::max(1, maxConcurrentLoads)) { }

void LoadManager::requestSlot(Continuation granted)
{
    {
        std::lock_guard lock(m_mutex);
        qCDebug(lcEngine, "requestSlot() called - active: %d/%d, waiting: %d", m_activeLoads, m_maxConcurrentLoads,
            int(m_waiting.size()));
        if (m_activeLoads >= m_maxConcurrentLoads) {
            m_waiting.push_back(std::move(granted));
            qCDebug(lcEngine, "No slots available, WAITING... (active: %d, waiting: %d)", m_activeLoads,
                int(m_waiting.size()));
            return;
        }
        ++m_activeLoads;
        qCDebug(lcEngine, "Slot GRANTED immediately - now active: %d", m_activeLoads);
    }
    granted();
}

bool LoadManager::releaseSlot()
{
    Continuation resumed;
    {
        std::lock_guard lock(m_mutex);
        if (m_activeLoads <= 0) {
            qCWarning(lcEngine, "releaseSlot() called with no slot held - ignored");
            return false;
        }
        --m_activeLoads;
        qCDebug(lcEngine, "releaseSlot() - now active: %d, waiting: %d", m_activeLoads, int(m_waiting.size()));
        if (m_waiting.empty())
            return true;
        resumed = std::move(m_waiting.front());
        m_waiting.pop_front();
        qCDebug(lcEngine, "Resuming waiting task - remaining waiting: %d", int(m_waiting.size()));
        // Taken under the same lock, so no newcomer can slip into the slot between release and grant.
        ++m_activeLoads;
        qCDebug(lcEngine, "Slot GRANTED after wait - now active: %d", m_activeLoads);
    }
    resumed();
    return true;
}

void LoadManager::reset()
{
    std::deque<Continuation> resumed;
    {
        std::lock_guard lock(m_mutex);
        qCDebug(lcEngine, "reset() called - resuming %d waiting tasks", int(m_waiting.size()));
        resumed = std::exchange(m_waiting, {});
        m_activeLoads = 0;
        for (std::size_t i = 0; i < resumed.size(); ++i) {
            ++m_activeLoads;
            qCDebug(lcEngine, "Slot GRANTED after wait - now active: %d", m_activeLoads);
        }
    }
    for (Continuation &continuation : resumed)
        continuation();
}

int LoadManager::activeLoads() const
{
    std::lock_guard lock(m_mutex);
    return m_activeLoads;
}

int LoadManager::waitingCount() const
{
    std::lock_guard lock(m_mutex);
    return int(m_waiting.size());
}

} // namespace sorvane
