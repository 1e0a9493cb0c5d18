#pragma once

#include <QHash>
#include <QtGlobal>

#include <algorithm>
#include <list>
#include <optional>
#include <utility>

namespace sorvane {

// A map that forgets its least recently used entries once their total cost or their number
// passes a limit, whichever comes first. Not thread-safe: its owner locks.
template <typename Key, typename Value> class LruCache {
public:
    LruCache(qint64 totalCostLimit, qsizetype countLimit) : m_totalCostLimit(totalCostLimit), m_countLimit(countLimit)
    {
    }

    // The value, now the most recently used; nothing when absent.
    std::optional<Value> object(const Key &key)
    {
        const auto found = m_index.constFind(key);
        if (found == m_index.cend())
            return std::nullopt;
        m_entries.splice(m_entries.begin(), m_entries, found.value());
        return m_entries.front().value;
    }

    // Stores `value` as the most recently used entry, replacing any under `key`, then evicts
    // down to the limits. A value that alone costs more than the whole cache may is not kept
    // (false), and keeping it does not cost the entries already there.
    bool insert(const Key &key, Value value, qint64 cost)
    {
        remove(key);
        cost = std::max<qint64>(0, cost);
        if (cost > m_totalCostLimit || m_countLimit <= 0)
            return false;
        m_entries.push_front(Entry {key, std::move(value), cost});
        m_index.insert(key, m_entries.begin());
        m_totalCost += cost;
        while (m_totalCost > m_totalCostLimit || qsizetype(m_entries.size()) > m_countLimit) {
            m_totalCost -= m_entries.back().cost;
            m_index.remove(m_entries.back().key);
            m_entries.pop_back();
        }
        return true;
    }

    void remove(const Key &key)
    {
        const auto found = m_index.find(key);
        if (found == m_index.end())
            return;
        m_totalCost -= found.value()->cost;
        m_entries.erase(found.value());
        m_index.erase(found);
    }

    void clear()
    {
        m_entries.clear();
        m_index.clear();
        m_totalCost = 0;
    }

    qsizetype count() const { return qsizetype(m_entries.size()); }
    qint64 totalCost() const { return m_totalCost; }

private:
    struct Entry {
        Key key;
        Value value;
        qint64 cost;
    };
    using Entries = std::list<Entry>;

    const qint64 m_totalCostLimit;
    const qsizetype m_countLimit;
    // Most recently used first.
    Entries m_entries;
    QHash<Key, typename Entries::iterator> m_index;
    qint64 m_totalCost = 0;
};

} // namespace sorvane
