#include "collage/CollageCoordinator.h"

#include <limits>

namespace sorvane {

CollageCoordinator::CollageCoordinator(QObject *parent) : QObject(parent) { }

void CollageCoordinator::broadcast(
    const QList<QUuid> &slotItems, const QList<CollageDrop> &drops, int variantIndex, CollageMutationKind kind)
{
    if (m_seq == std::numeric_limits<qint64>::max())
        qFatal("CollageCoordinator::broadcast: sequence number overflow");
    ++m_seq;
    m_mirror = CollageBroadcast {slotItems, drops, variantIndex, kind, m_seq};
    m_pending = m_followers;
    m_taken = false;
    Q_EMIT seqChanged();
    Q_EMIT mirrorChanged();
}

CollageCoordinator::FollowerId CollageCoordinator::attachFollower()
{
    if (m_lastFollower == std::numeric_limits<FollowerId>::max())
        qFatal("CollageCoordinator::attachFollower: follower id overflow");
    const FollowerId follower = ++m_lastFollower;
    m_followers.insert(follower);
    if (m_mirror)
        m_pending.insert(follower);
    return follower;
}

void CollageCoordinator::detachFollower(FollowerId follower)
{
    m_followers.remove(follower);
    if (m_pending.remove(follower))
        clearWhenAllConsumed();
}

std::optional<CollageBroadcast> CollageCoordinator::consume(FollowerId follower)
{
    if (!m_mirror || !m_pending.remove(follower))
        return std::nullopt;
    std::optional<CollageBroadcast> taken = m_mirror;
    m_taken = true;
    clearWhenAllConsumed();
    return taken;
}

void CollageCoordinator::clearWhenAllConsumed()
{
    // Untaken, it waits for the first follower to attach.
    if (!m_pending.isEmpty() || !m_taken || !m_mirror)
        return;
    m_mirror.reset();
    Q_EMIT mirrorChanged();
}

} // namespace sorvane
