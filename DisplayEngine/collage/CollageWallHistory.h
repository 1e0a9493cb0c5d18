#pragma once

#include "collage/CollageSlotSwap.h"

#include <QList>

#include <optional>

namespace sorvane {

// The wall's recent changes, one batch of slot swaps per change, oldest first,
// with the batches stepped back over kept for stepping forward again.
class CollageWallHistory {
public:
    using Batch = QList<CollageSlotSwap>;

    static constexpr qsizetype defaultDepth = 8;

    // A depth below 1 is held at 1, so a recorded swap always has a batch to go to.
    explicit CollageWallHistory(qsizetype depth = defaultDepth);

    const QList<Batch> &batches() const { return m_batches; }
    qsizetype depth() const { return m_depth; }
    // Stepped-back batches, the next one to step forward to last.
    const QList<Batch> &forwardBatches() const { return m_forward; }

    // Starts the batch of a new change. The batches stepped back over are dropped:
    // a new change makes them unreachable.
    void beginBatch();
    // Adds the swap to the newest batch, starting one if there is none.
    void record(const CollageSlotSwap &swap);

    // Takes the newest batch off for the caller to undo (last swap first), or
    // nothing when there is none.
    std::optional<Batch> stepBack();
    // Puts the most recently undone batch back for the caller to re-apply.
    std::optional<Batch> stepForward();

    // Compares the recorded batches only; depth and the forward list are how the
    // history is kept, not what it holds.
    friend bool operator==(const CollageWallHistory &a, const CollageWallHistory &b)
    {
        return a.m_batches == b.m_batches;
    }

private:
    void append(Batch batch);

    QList<Batch> m_batches;
    QList<Batch> m_forward;
    qsizetype m_depth;
};

} // namespace sorvane
