#pragma once

#include "bundle/Pcg32.h"
#include "collage/CollageAnimation.h"
#include "collage/CollageCoordinator.h"
#include "collage/CollageRole.h"
#include "collage/CollageSlotHistory.h"
#include "collage/CollageWallClock.h"
#include "collage/CollageWallHistory.h"
#include "collage/CollageWallSettings.h"
#include "collage/CollageWallState.h"
#include "collage/CollageWallStep.h"
#include "collage/ScatterDeck.h"

#include <QMetaObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace sorvane {

// One collage wall's content and the rules by which it changes: Varied slots advance in
// turn, Flow slots are replaced a few at a time, Scatter photos pile up. It keeps the
// wall's history and each slot's own, captures and restores its state, and as a mirror
// leader broadcasts every change, as a follower copies the leader's. Timers and drawing
// belong to the host, which calls `tick` on its heartbeat. Main thread only.
class CollageWall {
public:
    // Called after every change of the content, with how the view animates it.
    using ChangeHandler = std::function<void(CollageMutationKind kind, const CollageAnimation &animation)>;

    // A fresh wall of `layout` over `pool`; `seed` makes its draws reproducible.
    CollageWall(CollageLayout layout, QList<ImageItem> pool, qint64 poolGeneration, quint64 seed,
        CollageRole role = CollageRole::independent, CollageCoordinator *coordinator = nullptr);
    ~CollageWall();
    Q_DISABLE_COPY_MOVE(CollageWall)

    const CollageWallState &state() const { return m_state; }
    CollageWallState capture() const { return m_state; }
    // Takes over `state` when it was built from this wall's pool generation and has its
    // layout; otherwise the wall stays as it is and this returns false.
    bool restore(const CollageWallState &state);

    // The pool's item with this identity, or null.
    const ImageItem *item(const QUuid &id) const { return m_deck.find(id); }
    const CollageWallHistory &history() const { return m_history; }
    const CollageSlotHistory &slotHistory() const { return m_slotHistory; }

    CollageRole role() const { return m_role; }
    void setRole(CollageRole role);
    const CollageWallSettings &settings() const { return m_settings; }
    void setSettings(const CollageWallSettings &settings) { m_settings = settings; }
    void setChangeHandler(ChangeHandler handler) { m_onChange = std::move(handler); }

    // Flow: the slots laid out in strips, one entry per slot. Items of slots that remain
    // stay; new slots get new items.
    void seedFlow(const QList<int> &columnOf, double width, double height, int columns, FlowOrientation orientation);
    // The item of Flow slot `slot`, dealt now when the slot is new: seeding may ask for
    // the items one by one before the strips are known. Null when the pool is empty.
    QUuid flowSlotItem(qsizetype slot);
    void setAspect(const QUuid &item, double aspect) { m_state.flowAspect.insert(item, aspect); }

    // A user interaction with the wall at `at` (seconds on the host's steady clock).
    void noteInteraction(double at) { m_clock.noteInteraction(at); }
    // One heartbeat of `elapsed` seconds ending at `now`. `holdStill` (the wall paused, a
    // menu open) stops the clocks; a follower never changes by itself.
    void tick(double elapsed, double now, bool holdStill = false);

    // Each returns whether the wall changed.
    // Varied: the next `slotCount` slots in turn; Flow: that many slots at random.
    bool advance(int slotCount = 1);
    bool reshuffleVariant();
    bool dropNext();
    bool raise(const QUuid &item);
    // Through the wall's history; on Scatter, takes the top photo off or puts it back.
    bool step(CollageWallStep step);
    // Through one slot's own history; forward past its end brings a new item.
    bool stepSlot(qsizetype slot, CollageWallStep step);
    // An item that cannot be shown leaves the deal for good and every place on the wall
    // that holds it takes the next item, so no hole stays. Returns whether the wall changed.
    bool retire(const QUuid &item);

private:
    bool isVaried() const;
    // The kind under which the whole content is published or replaced at once.
    CollageMutationKind contentKind() const;
    QSet<QUuid> onScreen() const;
    std::optional<CollageDrop> newDrop();
    QList<qsizetype> slotsToAdvance(int count);
    void applyBatch(const CollageWallHistory::Batch &batch, CollageWallStep step);
    void changed(CollageMutationKind kind);
    void publishContent();
    void attach();
    void detach();
    void followMirror();

    CollageWallState m_state;
    ScatterDeck m_deck;
    Pcg32 m_random;
    CollageRole m_role;
    QPointer<CollageCoordinator> m_coordinator;
    std::optional<CollageCoordinator::FollowerId> m_follower;
    QMetaObject::Connection m_mirrorConnection;
    CollageWallSettings m_settings;
    CollageWallClock m_clock;
    CollageWallHistory m_history;
    CollageSlotHistory m_slotHistory;
    QList<CollageDrop> m_lifted; // Scatter photos stepped back off the table, last lifted last
    qsizetype m_advanceIndex = 0; // the next Varied slot to change
    ChangeHandler m_onChange;
};

} // namespace sorvane
