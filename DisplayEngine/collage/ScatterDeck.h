#pragma once

#include "media/ImageItem.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QUuid>

#include <optional>

namespace sorvane {

class Pcg32;

// The wall's item pool as a shuffled deck: every item is dealt once before any comes
// again, and the deck is reshuffled when it runs out.
class ScatterDeck {
public:
    explicit ScatterDeck(QList<ImageItem> pool = {});

    const QList<ImageItem> &pool() const { return m_pool; }
    // The pool's item with this identity, or null.
    const ImageItem *find(const QUuid &id) const;

    // The next item that is not in `onScreen`, so a wall does not show one photo twice.
    // When every item is on screen (a pool smaller than the wall) the next card is dealt
    // anyway; nothing only when the pool is empty.
    std::optional<ImageItem> deal(const QSet<QUuid> &onScreen, Pcg32 &random);
    // Takes an item that cannot be shown out of the deal for good; it stays findable.
    // False for an unknown or already retired item.
    bool retire(const QUuid &id);
    // Items that can still be dealt.
    qsizetype dealable() const { return m_order.size(); }

private:
    const ImageItem &draw(Pcg32 &random);

    QList<ImageItem> m_pool;
    QHash<QUuid, qsizetype> m_indexOf;
    QList<qsizetype> m_order;
    qsizetype m_next = 0;
};

} // namespace sorvane
