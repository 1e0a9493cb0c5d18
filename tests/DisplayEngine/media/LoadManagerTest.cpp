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

const QString kEngineDebug = QStringLiteral("sorvane.engine.debug=true");

std::string debugLine(const char *text)
{
    return test::logLine("sorvane.engine", "debug", QString::fromUtf8(text));
}

// Requests a slot that records, in order, which request was granted.
class Requests {
public:
    explicit Requests(LoadManager &manager) : m_manager(manager) { }

    void request(int id)
    {
        m_manager.requestSlot([this, id] { granted.push_back(id); });
    }

    LoadManager &m_manager;
    std::vector<int> granted;
};

TEST(LoadManagerTest, GrantsFourAtOnceAndQueuesTheRestFirstComeFirstServed)
{
    LoadManager manager;
    Requests requests(manager);
    LogCapture log(kEngineDebug);

    for (int id = 1; id <= 5; ++id)
        requests.request(id);
    EXPECT_EQ(requests.granted, (std::vector<int> {1, 2, 3, 4}));
    EXPECT_EQ(manager.activeLoads(), 4);
    EXPECT_EQ(manager.waitingCount(), 1);
    EXPECT_EQ(log.take(),
        (std::vector<std::string> {
            debugLine("requestSlot() called - active: 0/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 1"),
            debugLine("requestSlot() called - active: 1/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 2"),
            debugLine("requestSlot() called - active: 2/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 3"),
            debugLine("requestSlot() called - active: 3/4, waiting: 0"),
            debugLine("Slot GRANTED immediately - now active: 4"),
            debugLine("requestSlot() called - active: 4/4, waiting: 0"),
            debugLine("No slots available, WAITING... (active: 4, waiting: 1)"),
        }));

    requests.request(6);
    requests.request(7);
    log.clear();

    // A released slot goes straight to the oldest waiter, never to a newcomer.
    ASSERT_TRUE(manager.releaseSlot());
    EXPECT_EQ(requests.granted, (std::vector<int> {1, 2, 3, 4, 5}));
    EXPECT_EQ(manager.activeLoads(), 4);
    EXPECT_EQ(manager.waitingCount(), 2);
    EXPECT_EQ(log.take(),
        (std::vector<std::string> {
            debugLine("releaseSlot() - now active: 3, waiting: 3"),
            debugLine("Resuming waiting task - remaining waiting: 2"),
            debugLine("Slot GRANTED after wait - now active: 4"),
        }));

    requests.request(8);
    ASSERT_TRUE(manager.releaseSlot());
    ASSERT_TRUE(manager.releaseSlot());
    ASSERT_TRUE(manager.releaseSlot());
    EXPECT_EQ(requests.granted, (std::vector<int> {1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(manager.waitingCount(), 0);
    EXPECT_EQ(manager.activeLoads(), 4);
}

TEST(LoadManagerTest, ReleasesWithoutWaitersOnlyLowerTheCount)
{
    LoadManager manager;
    Requests requests(manager);
    requests.request(1);
    requests.request(2);
    LogCapture log(kEngineDebug);

    ASSERT_TRUE(manager.releaseSlot());
    EXPECT_EQ(manager.activeLoads(), 1);
    EXPECT_EQ(requests.granted.size(), 2u);
    EXPECT_EQ(log.take(), (std::vector<std::string> {debugLine("releaseSlot() - now active: 1, waiting: 0")}));

    ASSERT_TRUE(manager.releaseSlot());
    EXPECT_EQ(manager.activeLoads(), 0);

    // A release too many is refused and leaves the count where it was.
    log.clear();
    EXPECT_FALSE(manager.releaseSlot());
    EXPECT_EQ(manager.activeLoads(), 0);
    EXPECT_EQ(log.take(),
        (std::vector<std::string> {
            test::logLine(
                "sorvane.engine", "warning", QStringLiteral("releaseSlot() called with no slot held - ignored")),
        }));
    requests.request(3);
    EXPECT_EQ(manager.activeLoads(), 1);
}

TEST(LoadManagerTest, ResetGrantsEveryWaiterAndCountsOnlyThem)
{
    LoadManager manager;
    Requests requests(manager);
    for (int id = 1; id <= 7; ++id)
        requests.request(id);
    ASSERT_EQ(manager.waitingCount(), 3);
    LogCapture log(kEngineDebug);

    manager.reset();
    EXPECT_EQ(requests.granted, (std::vector<int> {1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(manager.waitingCount(), 0);
    EXPECT_EQ(manager.activeLoads(), 3);
    EXPECT_EQ(log.take(),
        (std::vector<std::string> {
            debugLine("reset() called - resuming 3 waiting tasks"),
            debugLine("Slot GRANTED after wait - now active: 1"),
            debugLine("Slot GRANTED after wait - now active: 2"),
            debugLine("Slot GRANTED after wait - now active: 3"),
        }));

    // The count starts over from the released waiters: one more fits before anyone waits.
    requests.request(8);
    requests.request(9);
    EXPECT_EQ(requests.granted.back(), 8);
    EXPECT_EQ(manager.activeLoads(), 4);
    EXPECT_EQ(manager.waitingCount(), 1);

    LoadManager idle;
    idle.reset();
    EXPECT_EQ(idle.activeLoads(), 0);
}

TEST(LoadManagerTest, ResetMayLeaveMoreThanTheMaximumActive)
{
    LoadManager manager;
    Requests requests(manager);
    for (int id = 1; id <= 10; ++id)
        requests.request(id);
    ASSERT_EQ(manager.waitingCount(), 6);

    manager.reset();
    EXPECT_EQ(requests.granted.size(), 10u);
    EXPECT_EQ(manager.activeLoads(), 6);
    requests.request(11);
    EXPECT_EQ(requests.granted.size(), 10u);
    EXPECT_EQ(manager.waitingCount(), 1);
}

// Many threads requesting and releasing at once: the slots held at any moment never exceed the
// maximum, and every request is granted exactly once.
TEST(LoadManagerTest, NeverHandsOutMoreThanItsSlotsUnderContention)
{
    constexpr int kThreads = 8;
    constexpr int kRequestsPerThread = 200;
    constexpr int kTotal = kThreads * kRequestsPerThread;

    LoadManager manager;
    std::atomic<int> holding = 0;
    std::atomic<int> mostHeld = 0;
    std::atomic<int> granted = 0;
    std::atomic<int> released = 0;
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
