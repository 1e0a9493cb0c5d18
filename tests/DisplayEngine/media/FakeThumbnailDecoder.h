#pragma once

#include "media/DecodedThumbnail.h"
#include "media/ThumbnailDecoding.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace sorvane::test {

class FakeThumbnail final : public DecodedThumbnail {
public:
    FakeThumbnail(QSize size, qint64 cost) : m_size(size), m_cost(cost) { }
    QSize size() const override { return m_size; }
    qint64 cost() const override { return m_cost; }

private:
    QSize m_size;
    qint64 m_cost;
};

// A decoder that records what it was asked, keyed by file name, and, once held, keeps every
// decode waiting until the test opens that file's gate. Decodes come out at the size asked for.
class FakeThumbnailDecoder final : public ThumbnailDecoding {
public:
    static constexpr std::chrono::seconds kWait {10};

    ThumbnailResult decode(const QUrl &url, QSize maxPixelSize) override
    {
        const QString name = url.fileName();
        std::unique_lock lock(m_mutex);
        m_started.push_back(name);
        ++m_calls[name];
        ++m_inFlight;
        m_mostInFlight = std::max(m_mostInFlight, m_inFlight);
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_held || m_open.contains(name); });
        --m_inFlight;
        if (m_failOnce.contains(name))
            return {nullptr, m_failOnce.take(name)};
        return {std::make_shared<FakeThumbnail>(maxPixelSize, m_costs.value(name, 1)), {}};
    }

    // From now on, decodes wait for their file's gate.
    void hold()
    {
        std::lock_guard lock(m_mutex);
        m_held = true;
    }
    void open(const QString &name)
    {
        std::lock_guard lock(m_mutex);
        m_open.insert(name);
        m_changed.notify_all();
    }
    void openAll()
    {
        std::lock_guard lock(m_mutex);
        m_held = false;
        m_changed.notify_all();
    }

    void setCost(const QString &name, qint64 cost)
    {
        std::lock_guard lock(m_mutex);
        m_costs.insert(name, cost);
    }
    // The next decode of `name` fails with `error`, or with nothing at all when it is empty.
    void failOnce(const QString &name, const QString &error)
    {
        std::lock_guard lock(m_mutex);
        m_failOnce.insert(name, error);
    }

    // Waits, boundedly, until `count` decodes have started.
    bool waitForStarted(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, kWait, [&] { return m_started.size() >= count; });
    }

    std::vector<QString> started() const
    {
        std::lock_guard lock(m_mutex);
        return m_started;
    }
    int calls(const QString &name) const
    {
        std::lock_guard lock(m_mutex);
        return m_calls.value(name);
    }
    int mostInFlight() const
    {
        std::lock_guard lock(m_mutex);
        return m_mostInFlight;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_held = false;
    QSet<QString> m_open;
    QHash<QString, QString> m_failOnce;
    QHash<QString, qint64> m_costs;
    QHash<QString, int> m_calls;
    std::vector<QString> m_started;
    int m_inFlight = 0;
    int m_mostInFlight = 0;
};

} // namespace sorvane::test
