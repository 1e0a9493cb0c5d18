#include "media/ThumbnailCache.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFuture>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace sorvane {
namespace {

class FakeThumbnail final : public DecodedThumbnail {
public:
    FakeThumbnail(QSize size, qint64 cost) : m_size(size), m_cost(cost) { }
    QSize size() const override { return m_size; }
    qint64 cost() const override { return m_cost; }

private:
    QSize m_size;
    qint64 m_cost;
};

// Records what it was asked, by file name, and decodes at the size asked for. Once held, every
// decode waits until the test opens that file's gate.
class FakeDecoder final : public ThumbnailDecoding {
public:
    ThumbnailResult decode(const QUrl &url, QSize maxPixelSize) override
    {
        const QString name = url.fileName();
        std::unique_lock lock(mutex);
        started.push_back(name);
        ++calls[name];
        mostInFlight = std::max(mostInFlight, ++inFlight);
        changed.notify_all();
        changed.wait(lock, [&] { return !held || open.contains(name); });
        --inFlight;
        if (failOnce.contains(name))
            return {nullptr, failOnce.take(name)};
        return {std::make_shared<FakeThumbnail>(maxPixelSize, costs.value(name, 1)), {}};
    }

    // Changes the decoder's state under its lock, waking waiting decodes.
    void change(const std::function<void(FakeDecoder &)> &edit)
    {
        std::lock_guard lock(mutex);
        edit(*this);
        changed.notify_all();
    }
    // Waits, boundedly, until `count` decodes have started; returns the names started so far.
    std::vector<QString> waitForStarted(size_t count)
    {
        std::unique_lock lock(mutex);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(10), [&] { return started.size() >= count; }));
        return started;
    }
    int callsOf(const QString &name)
    {
        std::lock_guard lock(mutex);
        return calls.value(name);
    }

    std::mutex mutex;
    std::condition_variable changed;
    bool held = false;
    QSet<QString> open;
    QHash<QString, QString> failOnce; // the next decode of a file fails with this error
    QHash<QString, qint64> costs;
    QHash<QString, int> calls;
    std::vector<QString> started;
    int inFlight = 0, mostInFlight = 0;
};

const QSize kTile(256, 256);

QUrl photo(const QString &name)
{
    return QUrl::fromLocalFile(QStringLiteral("/photos/") + name);
}

// The future's result, once it is finished (waiting boundedly).
ThumbnailResult resultOf(const QFuture<ThumbnailResult> &future)
{
    const QDeadlineTimer deadline(10000);
    while (!future.isFinished() && !deadline.hasExpired())
        std::this_thread::yield();
    EXPECT_EQ(future.resultCount(), 1);
    return future.resultCount() == 1 ? future.result() : ThumbnailResult {};
}

class ThumbnailCacheTest : public ::testing::Test {
protected:
    ThumbnailResult load(const QString &name) { return resultOf(cache->thumbnail(photo(name), kTile)); }

    // Whether the cache answers for `name` at once, without decoding. The decoder is held
    // meanwhile, so a miss cannot finish before it is looked at.
    bool isCached(const QString &name)
    {
        const int before = decoder->callsOf(name);
        decoder->change([](FakeDecoder &d) { d.held = true; });
        const QFuture<ThumbnailResult> future = cache->thumbnail(photo(name), kTile);
        const bool hit = future.isFinished();
        decoder->change([](FakeDecoder &d) { d.held = false; });
        EXPECT_TRUE(resultOf(future).ok());
        EXPECT_EQ(decoder->callsOf(name), hit ? before : before + 1);
        return hit;
    }

    std::shared_ptr<FakeDecoder> decoder = std::make_shared<FakeDecoder>();
    std::unique_ptr<ThumbnailCache> cache = std::make_unique<ThumbnailCache>(decoder);
};

TEST_F(ThumbnailCacheTest, DecodesOnceServesHitsAtOnceAndTriesFailuresAgain)
{
    decoder->change([](FakeDecoder &d) {
        d.costs.insert(QStringLiteral("a.jpg"), 4096);
        d.failOnce.insert(QStringLiteral("b.jpg"), QStringLiteral("fake failure"));
        d.failOnce.insert(QStringLiteral("c.jpg"), QString());
    });
    const ThumbnailResult first = load(QStringLiteral("a.jpg"));
    ASSERT_TRUE(first.ok()) << first.error.toStdString();
    EXPECT_TRUE(first.error.isEmpty());
    EXPECT_EQ(first.size(), kTile);
    EXPECT_EQ(cache->count(), 1);
    EXPECT_EQ(cache->totalCost(), 4096);
    // A hit is finished before the call returns, and shares the decoded pixels.
    for (const QFuture<ThumbnailResult> &again : {cache->thumbnail(photo(QStringLiteral("a.jpg")), kTile),
             cache->thumbnail(ImageItem(photo(QStringLiteral("a.jpg"))), kTile)}) {
        ASSERT_TRUE(again.isFinished());
        EXPECT_EQ(again.result().thumbnail, first.thumbnail);
    }
    EXPECT_EQ(decoder->callsOf(QStringLiteral("a.jpg")), 1);

    for (const QSize size : {QSize(), QSize(0, 256), QSize(256, -1)}) {
        const QFuture<ThumbnailResult> future = cache->thumbnail(photo(QStringLiteral("d.jpg")), size);
        ASSERT_TRUE(future.isFinished());
        EXPECT_EQ(future.result().error.toStdString(), "thumbnail size must be positive");
    }
    EXPECT_EQ(decoder->callsOf(QStringLiteral("d.jpg")), 0);

    const ThumbnailResult failed = load(QStringLiteral("b.jpg"));
    EXPECT_FALSE(failed.ok());
    EXPECT_EQ(failed.error.toStdString(), "fake failure");
    EXPECT_FALSE(failed.size().isValid());
    EXPECT_EQ(load(QStringLiteral("c.jpg")).error.toStdString(), "thumbnail could not be decoded");
    EXPECT_EQ(cache->count(), 1);
    EXPECT_TRUE(load(QStringLiteral("b.jpg")).ok());
    EXPECT_TRUE(load(QStringLiteral("c.jpg")).ok());
    EXPECT_EQ(decoder->callsOf(QStringLiteral("b.jpg")), 2);
    EXPECT_EQ(cache->count(), 3);
}

TEST_F(ThumbnailCacheTest, DecodesAtMostFourAtOnceInTheOrderAskedAndJoinsLoadsOfTheSameFile)
{
    decoder->change([](FakeDecoder &d) { d.held = true; });
    std::vector<QString> names;
    std::vector<QFuture<ThumbnailResult>> futures;
    std::vector<QFuture<ThumbnailResult>> same;
    for (int i = 0; i < 12; ++i) {
        names.push_back(QStringLiteral("%1.jpg").arg(i));
        futures.push_back(cache->thumbnail(photo(names.back()), kTile));
        // Requests for a file that is loading, some at other sizes, join its load and take no
        // slot: three other files still start beside it.
        for (const QSize size : {kTile, QSize(64, 64), QSize(1024, 1024)})
            if (i == 0)
                same.push_back(cache->thumbnail(photo(names.back()), size));
    }

    // Let one finish at a time: each frees exactly one slot, which goes to the oldest request.
    decoder->waitForStarted(4);
    for (size_t finished = 0; finished < names.size(); ++finished) {
        const QString next = decoder->waitForStarted(finished + 1).at(finished);
        decoder->change([&](FakeDecoder &d) { d.open.insert(next); });
        decoder->waitForStarted(std::min(names.size(), finished + 5));
    }
    for (const QFuture<ThumbnailResult> &future : futures)
        EXPECT_TRUE(resultOf(future).ok());
    for (const QFuture<ThumbnailResult> &future : same)
        EXPECT_EQ(resultOf(future).thumbnail, resultOf(futures.front()).thumbnail);
    // The first four start together, in whatever order their threads get going; every later one
    // waited its turn.
    std::vector<QString> started = decoder->waitForStarted(names.size());
    std::sort(started.begin(), started.begin() + 4);
    std::sort(names.begin(), names.begin() + 4);
    EXPECT_EQ(started, names);
    EXPECT_EQ(decoder->mostInFlight, 4);
}

TEST_F(ThumbnailCacheTest, ManyThreadsAskingForTheSameFilesDecodeEachOnce)
{
    constexpr int kThreads = 8, kFiles = 6;
    std::vector<std::vector<QFuture<ThumbnailResult>>> futures(kThreads);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                for (int round = 0; round < 50; ++round)
                    futures[t].push_back(
                        cache->thumbnail(photo(QStringLiteral("%1.jpg").arg((round + t) % kFiles)), kTile));
            });
        }
    }
    for (const auto &perThread : futures) {
        for (const QFuture<ThumbnailResult> &future : perThread)
            EXPECT_TRUE(resultOf(future).ok());
    }
    for (int file = 0; file < kFiles; ++file)
        EXPECT_EQ(decoder->callsOf(QStringLiteral("%1.jpg").arg(file)), 1) << file;
    EXPECT_LE(decoder->mostInFlight, 4);
}

TEST_F(ThumbnailCacheTest, EvictsTheLeastRecentlyUsedOncePastTheCostOrCountLimit)
{
    cache = std::make_unique<ThumbnailCache>(decoder, 100, 3);
    decoder->change([](FakeDecoder &d) {
        for (const char *name : {"a.jpg", "b.jpg", "c.jpg"})
            d.costs.insert(QString::fromLatin1(name), 40);
        d.costs.insert(QStringLiteral("huge.jpg"), 101);
    });
    ASSERT_TRUE(load(QStringLiteral("a.jpg")).ok());
    ASSERT_TRUE(load(QStringLiteral("b.jpg")).ok());
    ASSERT_TRUE(isCached(QStringLiteral("a.jpg"))); // now b is the older
    ASSERT_TRUE(load(QStringLiteral("c.jpg")).ok());
    EXPECT_EQ(cache->count(), 2);
    EXPECT_EQ(cache->totalCost(), 80);
    EXPECT_FALSE(isCached(QStringLiteral("b.jpg"))); // decoded again, evicting a
    EXPECT_TRUE(isCached(QStringLiteral("c.jpg")));

    // One dearer than the whole cache is returned but not kept.
    EXPECT_TRUE(load(QStringLiteral("huge.jpg")).ok());
    EXPECT_EQ(cache->totalCost(), 80);
    EXPECT_FALSE(isCached(QStringLiteral("huge.jpg")));

    cache->clear();
    EXPECT_EQ(cache->count(), 0);
    EXPECT_EQ(cache->totalCost(), 0);
    EXPECT_FALSE(isCached(QStringLiteral("c.jpg")));
}

TEST_F(ThumbnailCacheTest, GoingAwayWaitsForRunningDecodesAndAnswersEveryRequest)
{
    decoder->change([](FakeDecoder &d) { d.held = true; });
    std::vector<QFuture<ThumbnailResult>> futures;
    for (int i = 0; i < 7; ++i)
        futures.push_back(cache->thumbnail(photo(QStringLiteral("%1.jpg").arg(i)), kTile));
    decoder->waitForStarted(4);
    std::future<void> destroyed = std::async(std::launch::async, [&] { cache.reset(); });
    decoder->change([](FakeDecoder &d) { d.held = false; });
    ASSERT_EQ(destroyed.wait_for(std::chrono::seconds(10)), std::future_status::ready);

    // The four running ones finish; the queued ones were either decoded before the cache began to
    // go or answered with an error without decoding. None is left without an answer.
    size_t decodedAfterQueueing = 0;
    for (size_t i = 0; i < futures.size(); ++i) {
        ASSERT_TRUE(futures[i].isFinished());
        ASSERT_EQ(futures[i].resultCount(), 1);
        const ThumbnailResult result = futures[i].result();
        if (i < 4) {
            EXPECT_TRUE(result.ok()) << i;
        } else if (result.ok()) {
            ++decodedAfterQueueing;
        } else {
            EXPECT_EQ(result.error.toStdString(), "thumbnail cache is closing");
            EXPECT_EQ(decoder->callsOf(QStringLiteral("%1.jpg").arg(i)), 0);
        }
    }
    EXPECT_EQ(decoder->waitForStarted(0).size(), 4 + decodedAfterQueueing);
}

} // namespace
} // namespace sorvane
