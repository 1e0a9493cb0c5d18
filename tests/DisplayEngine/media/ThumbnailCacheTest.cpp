#include "media/ThumbnailCache.h"

#include "FakeThumbnailDecoder.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFuture>

#include <algorithm>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace sorvane {
namespace {

using test::FakeThumbnailDecoder;

const QSize kTile(256, 256);

QUrl photo(const QString &name)
{
    return QUrl::fromLocalFile(QStringLiteral("/photos/") + name);
}

// Waits, boundedly, for the future to finish.
bool finishes(const QFuture<ThumbnailResult> &future)
{
    const QDeadlineTimer deadline(10000);
    while (!future.isFinished()) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::yield();
    }
    return true;
}

// The finished future's result.
ThumbnailResult resultOf(const QFuture<ThumbnailResult> &future)
{
    EXPECT_TRUE(finishes(future));
    EXPECT_EQ(future.resultCount(), 1);
    return future.resultCount() == 1 ? future.result() : ThumbnailResult {};
}

class ThumbnailCacheTest : public ::testing::Test {
protected:
    // Requests `name` and waits for it to be decoded and kept.
    ThumbnailResult load(ThumbnailCache &cache, const QString &name)
    {
        return resultOf(cache.thumbnail(photo(name), kTile));
    }

    // Whether the cache answers for `name` at once, without decoding. The decoder is held
    // meanwhile, so a miss cannot finish before it is looked at.
    bool isCached(ThumbnailCache &cache, const QString &name)
    {
        const int before = decoder->calls(name);
        decoder->hold();
        const QFuture<ThumbnailResult> future = cache.thumbnail(photo(name), kTile);
        const bool hit = future.isFinished();
        decoder->openAll();
        EXPECT_TRUE(resultOf(future).ok());
        EXPECT_EQ(decoder->calls(name), hit ? before : before + 1);
        return hit;
    }

    std::shared_ptr<FakeThumbnailDecoder> decoder = std::make_shared<FakeThumbnailDecoder>();
};

TEST_F(ThumbnailCacheTest, DecodesOnceAndServesFromMemoryAfterwards)
{
    ThumbnailCache cache(decoder);
    decoder->setCost(QStringLiteral("a.jpg"), 4096);

    const ThumbnailResult first = load(cache, QStringLiteral("a.jpg"));
    ASSERT_TRUE(first.ok()) << first.error.toStdString();
    EXPECT_TRUE(first.error.isEmpty());
    EXPECT_EQ(first.size(), kTile);
    EXPECT_EQ(cache.count(), 1);
    EXPECT_EQ(cache.totalCost(), 4096);

    // A hit is finished before the call returns, and shares the decoded pixels.
    const QFuture<ThumbnailResult> again = cache.thumbnail(photo(QStringLiteral("a.jpg")), kTile);
    ASSERT_TRUE(again.isFinished());
    EXPECT_EQ(again.result().thumbnail, first.thumbnail);
    const QFuture<ThumbnailResult> byItem = cache.thumbnail(ImageItem(photo(QStringLiteral("a.jpg"))), kTile);
    ASSERT_TRUE(byItem.isFinished());
    EXPECT_EQ(byItem.result().thumbnail, first.thumbnail);
    EXPECT_EQ(decoder->calls(QStringLiteral("a.jpg")), 1);
}

TEST_F(ThumbnailCacheTest, RefusalsAndFailuresAreReportedAndTriedAgainNextTime)
{
    ThumbnailCache cache(decoder);
    for (const QSize size : {QSize(), QSize(0, 256), QSize(256, -1)}) {
        const QFuture<ThumbnailResult> future = cache.thumbnail(photo(QStringLiteral("a.jpg")), size);
        ASSERT_TRUE(future.isFinished());
        EXPECT_EQ(future.result().error.toStdString(), "thumbnail size must be positive");
    }
    EXPECT_TRUE(decoder->started().empty());

    decoder->failOnce(QStringLiteral("a.jpg"), QStringLiteral("fake failure"));
    decoder->failOnce(QStringLiteral("b.jpg"), QString());
    const ThumbnailResult failed = load(cache, QStringLiteral("a.jpg"));
    EXPECT_FALSE(failed.ok());
    EXPECT_EQ(failed.error.toStdString(), "fake failure");
    EXPECT_FALSE(failed.size().isValid());
    EXPECT_EQ(load(cache, QStringLiteral("b.jpg")).error.toStdString(), "thumbnail could not be decoded");
    EXPECT_EQ(cache.count(), 0);

    EXPECT_TRUE(load(cache, QStringLiteral("a.jpg")).ok());
    EXPECT_TRUE(load(cache, QStringLiteral("b.jpg")).ok());
    EXPECT_EQ(decoder->calls(QStringLiteral("a.jpg")), 2);
    EXPECT_EQ(cache.count(), 2);
}

TEST_F(ThumbnailCacheTest, RequestsForAFileThatIsLoadingShareItsDecode)
{
    ThumbnailCache cache(decoder);
    decoder->hold();

    // Five requests for one file, some at other sizes: they join the first load and take no slot,
    // so three other files still start at once beside it.
    std::vector<QFuture<ThumbnailResult>> same;
    for (const QSize size : {kTile, kTile, QSize(64, 64), kTile, QSize(1024, 1024)})
        same.push_back(cache.thumbnail(photo(QStringLiteral("a.jpg")), size));
    std::vector<QFuture<ThumbnailResult>> others;
    for (const char *name : {"b.jpg", "c.jpg", "d.jpg"})
        others.push_back(cache.thumbnail(photo(QString::fromLatin1(name)), kTile));
    ASSERT_TRUE(decoder->waitForStarted(4));
    for (const QFuture<ThumbnailResult> &future : same)
        EXPECT_FALSE(future.isFinished());

    decoder->open(QStringLiteral("a.jpg"));
    const ThumbnailResult first = resultOf(same.front());
    ASSERT_TRUE(first.ok());
    for (const QFuture<ThumbnailResult> &future : same)
        EXPECT_EQ(resultOf(future).thumbnail, first.thumbnail);
    EXPECT_EQ(decoder->calls(QStringLiteral("a.jpg")), 1);

    decoder->openAll();
    for (const QFuture<ThumbnailResult> &future : others)
        EXPECT_TRUE(resultOf(future).ok());
    EXPECT_EQ(decoder->started().size(), 4u);
}

TEST_F(ThumbnailCacheTest, DecodesAtMostFourAtOnceInTheOrderAsked)
{
    ThumbnailCache cache(decoder);
    decoder->hold();
    std::vector<QString> names;
    std::vector<QFuture<ThumbnailResult>> futures;
    for (int i = 0; i < 12; ++i) {
        names.push_back(QStringLiteral("%1.jpg").arg(i));
        futures.push_back(cache.thumbnail(photo(names.back()), kTile));
    }

    // Let one finish at a time: each frees exactly one slot, which goes to the oldest request.
    ASSERT_TRUE(decoder->waitForStarted(4));
    for (std::size_t finished = 0; finished < names.size(); ++finished) {
        decoder->open(decoder->started().at(finished));
        ASSERT_TRUE(decoder->waitForStarted(std::min(names.size(), finished + 5)));
    }
    for (const QFuture<ThumbnailResult> &future : futures)
        EXPECT_TRUE(resultOf(future).ok());
    // The first four start together, in whatever order their threads get going; every later one
    // waited its turn.
    std::vector<QString> started = decoder->started();
    ASSERT_EQ(started.size(), names.size());
    std::sort(started.begin(), started.begin() + 4);
    std::sort(names.begin(), names.begin() + 4);
    EXPECT_EQ(started, names);
    EXPECT_EQ(decoder->mostInFlight(), 4);
}

TEST_F(ThumbnailCacheTest, ManyThreadsAskingForTheSameFilesDecodeEachOnce)
{
    ThumbnailCache cache(decoder);
    constexpr int kThreads = 8;
    constexpr int kFiles = 6;
    std::vector<std::vector<QFuture<ThumbnailResult>>> futures(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 50; ++round)
                futures[t].push_back(cache.thumbnail(photo(QStringLiteral("%1.jpg").arg((round + t) % kFiles)), kTile));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    for (const auto &perThread : futures) {
        for (const QFuture<ThumbnailResult> &future : perThread)
            EXPECT_TRUE(resultOf(future).ok());
    }
    for (int file = 0; file < kFiles; ++file)
        EXPECT_EQ(decoder->calls(QStringLiteral("%1.jpg").arg(file)), 1) << file;
    EXPECT_LE(decoder->mostInFlight(), 4);
}

TEST_F(ThumbnailCacheTest, EvictsTheLeastRecentlyUsedOncePastTheCostOrCountLimit)
{
    ThumbnailCache cache(decoder, 100, 3);
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg"})
        decoder->setCost(QString::fromLatin1(name), 40);
    decoder->setCost(QStringLiteral("huge.jpg"), 101);
    ASSERT_TRUE(load(cache, QStringLiteral("a.jpg")).ok());
    ASSERT_TRUE(load(cache, QStringLiteral("b.jpg")).ok());
    ASSERT_TRUE(isCached(cache, QStringLiteral("a.jpg"))); // now b is the older
    ASSERT_TRUE(load(cache, QStringLiteral("c.jpg")).ok());
    EXPECT_EQ(cache.count(), 2);
    EXPECT_EQ(cache.totalCost(), 80);
    EXPECT_FALSE(isCached(cache, QStringLiteral("b.jpg"))); // decoded again, evicting a
    EXPECT_TRUE(isCached(cache, QStringLiteral("c.jpg")));

    // One dearer than the whole cache is returned but not kept.
    EXPECT_TRUE(load(cache, QStringLiteral("huge.jpg")).ok());
    EXPECT_EQ(cache.totalCost(), 80);
    EXPECT_FALSE(isCached(cache, QStringLiteral("huge.jpg")));

    // The count limit: cheap ones push the oldest out too.
    ASSERT_TRUE(load(cache, QStringLiteral("d.jpg")).ok());
    ASSERT_TRUE(load(cache, QStringLiteral("e.jpg")).ok());
    EXPECT_EQ(cache.count(), 3);
    EXPECT_EQ(cache.totalCost(), 40 + 1 + 1);
    EXPECT_TRUE(isCached(cache, QStringLiteral("c.jpg")));

    cache.clear();
    EXPECT_EQ(cache.count(), 0);
    EXPECT_EQ(cache.totalCost(), 0);
    EXPECT_FALSE(isCached(cache, QStringLiteral("c.jpg")));
}

TEST_F(ThumbnailCacheTest, GoingAwayWaitsForRunningDecodesAndAnswersEveryRequest)
{
    auto cache = std::make_unique<ThumbnailCache>(decoder);
    decoder->hold();
    std::vector<QFuture<ThumbnailResult>> futures;
    for (int i = 0; i < 7; ++i)
        futures.push_back(cache->thumbnail(photo(QStringLiteral("%1.jpg").arg(i)), kTile));
    ASSERT_TRUE(decoder->waitForStarted(4));

    std::future<void> destroyed = std::async(std::launch::async, [&] { cache.reset(); });
    decoder->openAll();
    ASSERT_EQ(destroyed.wait_for(std::chrono::seconds(10)), std::future_status::ready);

    // The four running ones finish; the queued ones were either decoded before the cache began to
    // go or answered with an error without decoding. None is left without an answer.
    int decodedAfterQueueing = 0;
    for (std::size_t i = 0; i < futures.size(); ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(futures[i].isFinished());
        ASSERT_EQ(futures[i].resultCount(), 1);
        const ThumbnailResult result = futures[i].result();
        if (i < 4) {
            EXPECT_TRUE(result.ok());
        } else if (result.ok()) {
            ++decodedAfterQueueing;
        } else {
            EXPECT_EQ(result.error.toStdString(), "thumbnail cache is closing");
            EXPECT_EQ(decoder->calls(QStringLiteral("%1.jpg").arg(i)), 0);
        }
    }
    EXPECT_EQ(decoder->started().size(), 4u + decodedAfterQueueing);
}

} // namespace
} // namespace sorvane
