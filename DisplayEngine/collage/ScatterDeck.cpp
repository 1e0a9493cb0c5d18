#include "collage/ScatterDeck.h"

#include "bundle/Pcg32.h"

#include <limits>
#include <numeric>
#include <utility>

namespace sorvane {

ScatterDeck::ScatterDeck(QList<ImageItem> pool) : m_pool(std::move(pool))
{
    if (quint64(m_pool.size()) > std::numeric_limits<quint32>::max())
        qFatal("ScatterDeck: a pool of %lld items is beyond the generator's range", qlonglong(m_pool.size()));
    for (qsizetype i = 0; i < m_pool.size(); ++i)
        m_indexOf.insert(m_pool[i].id(), i);
    m_order.resize(m_pool.size());
    std::iota(m_order.begin(), m_order.end(), qsizetype(0));
    // Starts exhausted, so the first deal shuffles.
    m_next = m_order.size();
}

const ImageItem *ScatterDeck::find(const QUuid &id) const
{
    const auto found = m_indexOf.constFind(id);
    return found == m_indexOf.cend() ? nullptr : &m_pool[*found];
}

std::optional<ImageItem> ScatterDeck::deal(const QSet<QUuid> &onScreen, Pcg32 &random)
{
    if (m_order.isEmpty())
        return std::nullopt;
    // The rest of this deck plus one whole fresh deck is under two decks' worth of
    // cards, so this many draws meet every item at least once.
    const qsizetype attempts = 2 * m_order.size();
    for (qsizetype i = 0; i < attempts; ++i) {
        const ImageItem &card = draw(random);
        if (!onScreen.contains(card.id()))
            return card;
    }
    return draw(random);
}

bool ScatterDeck::retire(const QUuid &id)
{
    const auto index = m_indexOf.constFind(id);
    if (index == m_indexOf.constEnd())
        return false;
    const qsizetype at = m_order.indexOf(*index);
    if (at < 0)
        return false;
    m_order.removeAt(at);
    // Cards already dealt from this deck stay dealt.
    if (at < m_next)
        --m_next;
    return true;
}

const ImageItem &ScatterDeck::draw(Pcg32 &random)
{
    if (m_next >= m_order.size()) {
        for (qsizetype i = m_order.size() - 1; i >= 1; --i)
            std::swap(m_order[i], m_order[qsizetype(random.next(quint32(i + 1)))]);
        m_next = 0;
    }
    return m_pool[m_order[m_next++]];
}

} // namespace sorvane
