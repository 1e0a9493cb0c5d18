#pragma once

#include "collage/CollageBroadcast.h"

#include <QObject>
#include <QSet>

#include <optional>

namespace sorvane {

// Carries a mirror leader's changes to its followers; one per mirrored show, shared by
// its walls. Main thread only.
//
// A broadcast stays in `mirror` until every follower attached when it was published
// (or attached since) has consumed it, so with several followers none misses it, and a
// follower joining late starts from the leader's current content.
class CollageCoordinator : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::optional<sorvane::CollageBroadcast> mirror READ mirror NOTIFY mirrorChanged)
    Q_PROPERTY(qint64 seq READ seq NOTIFY seqChanged)

public:
    using FollowerId = qint64;

    explicit CollageCoordinator(QObject *parent = nullptr);

    // The latest broadcast not yet consumed by every follower.
    const std::optional<CollageBroadcast> &mirror() const { return m_mirror; }
    // The last sequence number used; 0 before the first broadcast.
    qint64 seq() const { return m_seq; }

    // Leader: publishes the wall's whole content with the next sequence number.
    void broadcast(
        const QList<QUuid> &slotItems, const QList<CollageDrop> &drops, int variantIndex, CollageMutationKind kind);

    FollowerId attachFollower();
    void detachFollower(FollowerId follower);
    // Follower: the broadcast this follower has not applied yet, or nothing. Once every
    // follower has taken it, `mirror` is cleared.
    std::optional<CollageBroadcast> consume(FollowerId follower);

Q_SIGNALS:
    void mirrorChanged();
    void seqChanged();

private:
    void clearWhenAllConsumed();

    std::optional<CollageBroadcast> m_mirror;
    qint64 m_seq = 0;
    FollowerId m_lastFollower = 0;
    QSet<FollowerId> m_followers;
    QSet<FollowerId> m_pending; // followers that have not taken `m_mirror` yet
    bool m_taken = false; // some follower has taken `m_mirror`
};

} // namespace sorvane
