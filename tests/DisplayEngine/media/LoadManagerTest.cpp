#include "media/LoadManager.h"

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sorvane {
namespace {

using test::LogCapture;

std::string debugLine(const char *text)
{
    return test::logLine("sorvane.engine", "debug", QString::fromUtf8(text));
}

// Requests slots that record, in order, which request was granted.
struct Requests {
    LoadManager manager;
    std::vector<int> granted;
    void request(int from, int to)
    {
        for (int id = from; id <= to; ++id)
            manager.requestSlot([this, id] { granted.push_back(id); });
    }
};

TEST(LoadManagerTest, GrantsFourAtOnceAndHandsReleasedSlotsToTheOldestWaiter)
{
    Requests r;
    LogCapture log(QStringLiteral("sorvane.engine.debug=true"));
    r.request(4, 5);
    log.clear();
    r.request(1, 3);
    EXPECT_EQ(r.granted, (std::vector<int> {4, 5, 1, 2}));
    EXPECT_EQ(r.manager.waitingCount(), 1);
    EXPECT_EQ(log.take(),
        (std::vector<std::string> {debugLine("requestSlot() called - active: 2/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 3"),
            debugLine("requestSlot() called - active: 3/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 4"),
            debugLine("requestSlot() called - active: 4/4, waiting: 0"),
            debugLine("No slots available, WAITING... (active: 4, waiting: 1)")}));

    r.request(6, 7);
    ASSERT_TRUE(r.manager.releaseSlot());
    EXPECT_EQ(r.granted.back(), 3); // never a newcomer
    EXPECT_EQ(r.manager.activeLoads(), 4);
    EXPECT_EQ(log.take().back(), debugLine("Slot GRANTED after wait - now active: 4"));
    for (int i = 0; i < 6; ++i)
        ASSERT_TRUE(r.manager.releaseSlot());
    EXPECT_EQ(r.granted, (std::vector<int> {4, 5, 1, 2, 3, 6, 7}));
    EXPECT_EQ(r.manager.activeLoads(), 0);
    log.clear();

    // A release too many is refused and leaves the count where it was.
    EXPECT_FALSE(r.manager.releaseSlot());
    EXPECT_EQ(r.manager.activeLoads(), 0);
    EXPECT_EQ(log.take(),
        std::vector<std::string> {test::logLine(
            "sorvane.engine", "warning", QStringLiteral("releaseSlot() called with no slot held - ignored"))});
}

TEST(LoadManagerTest, ResetGrantsEveryWaiterAndCountsOnlyThem)
{
    Requests r;
    r.request(1, 10);
    ASSERT_EQ(r.manager.waitingCount(), 6);
    LogCapture log(QStringLiteral("sorvane.engine.debug=true"));
    r.manager.reset();
    EXPECT_EQ(r.granted.size(), 10u);
    EXPECT_EQ(r.manager.waitingCount(), 0);
    // The count starts over from the released waiters, and may exceed the maximum.
    EXPECT_EQ(r.manager.activeLoads(), 6);
    EXPECT_EQ(log.take().front(), debugLine("reset() called - resuming 6 waiting tasks"));
    r.request(11, 11);
    EXPECT_EQ(r.granted.size(), 10u);

    Requests few;
    few.request(1, 7);
    few.manager.reset();
    few.request(8, 9);
    EXPECT_EQ(few.granted.back(), 8);
    EXPECT_EQ(few.manager.activeLoads(), 4);
    EXPECT_EQ(few.manager.waitingCount(), 1);
}

// Many threads requesting and releasing at once: the slots held at any moment never exceed the
// maximum, and every request is granted exactly once.
TEST(LoadManagerTest, NeverHandsOutMoreThanItsSlotsUnderContention)
{
    constexpr int kThreads = 8;
    constexpr int kRequestsPerThread = 200;
    constexpr int kTotal = kThreads * kRequestsPerThread;

    LoadManager manager;
    std::atomic<int> holding = 0, mostHeld = 0, granted = 0, released = 0;
    std::mutex heldMutex;
    int held = 0; // grants not yet released, whichever thread got them

    const auto onGranted = [&] {
        const int now = ++holding;
        int most = mostHeld.load();
        while (now > most && !mostHeld.compare_exchange_weak(most, now)) { }
        ++granted;
        std::lock_guard lock(heldMutex);
        ++held;
    };
    const auto releaseOne = [&] {
        {
            std::lock_guard lock(heldMutex);
            if (held == 0)
                return false;
            --held;
        }
        --holding; // before the release, which may hand the slot on at once
        ++released;
        EXPECT_TRUE(manager.releaseSlot());
        return true;
    };

    const QDeadlineTimer deadline(30000);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kRequestsPerThread; ++i) {
                manager.requestSlot(onGranted);
                // Alternate so that some threads pile up requests while others release.
                if ((i + t) % 2 == 0)
                    releaseOne();
            }
            while (released.load() < kTotal && !deadline.hasExpired()) {
                if (!releaseOne())
                    std::this_thread::yield();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    ASSERT_FALSE(deadline.hasExpired()) << "granted " << granted.load() << " of " << kTotal;
    EXPECT_EQ(granted.load(), kTotal);
    EXPECT_LE(mostHeld.load(), LoadManager::kDefaultMaxConcurrentLoads);
    EXPECT_EQ(manager.activeLoads(), 0);
    EXPECT_EQ(manager.waitingCount(), 0);
}

} // namespace
} // namespace sorvane
