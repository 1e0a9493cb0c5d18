#include "media/LoadManager.h"

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace sorvane {
namespace {

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
    test::LogCapture log(QStringLiteral("sorvane.engine.debug=true"));
    r.request(4, 5);
    log.take();
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
    log.take();

    // A release too many is refused and leaves the count where it was.
    EXPECT_FALSE(r.manager.releaseSlot());
    EXPECT_EQ(r.manager.activeLoads(), 0);
    EXPECT_EQ(log.take(),
        std::vector<std::string> {test::logLine(
            "sorvane.engine", "warning", QStringLiteral("releaseSlot() called with no slot held - ignored"))});
}

TEST(LoadManagerTest, ResetGrantsEveryWaiterAndCountsOnlyThem)
{
    // Requests before the reset; then, after two more requests, how many were granted and wait.
    const struct {
        int requested, grantedAfter, waitingAfter;
    } rows[] = {{10, 10, 2}, {7, 8, 1}};
    for (const auto &row : rows) {
        Requests r;
        test::LogCapture log(QStringLiteral("sorvane.engine.debug=true"));
        r.request(1, row.requested);
        log.take();
        r.manager.reset();
        EXPECT_EQ(log.take().front(),
            debugLine(QStringLiteral("reset() called - resuming %1 waiting tasks").arg(row.requested - 4).toUtf8()));
        EXPECT_EQ(int(r.granted.size()), row.requested);
        EXPECT_EQ(r.manager.waitingCount(), 0);
        // The count starts over from the released waiters, and may exceed the maximum.
        EXPECT_EQ(r.manager.activeLoads(), row.requested - 4);
        r.request(row.requested + 1, row.requested + 2);
        EXPECT_EQ(int(r.granted.size()), row.grantedAfter);
        EXPECT_EQ(r.manager.waitingCount(), row.waitingAfter);
    }
}

// Many threads requesting and releasing at once: the slots held at any moment never exceed the
// maximum, and every request is granted exactly once.
TEST(LoadManagerTest, NeverHandsOutMoreThanItsSlotsUnderContention)
{
    constexpr int kThreads = 8, kTotal = kThreads * 200;
    LoadManager manager;
    std::atomic<int> holding = 0, mostHeld = 0, granted = 0, unreleased = 0, released = 0;
    const auto onGranted = [&] {
        const int now = ++holding;
        for (int most = mostHeld; now > most && !mostHeld.compare_exchange_weak(most, now);) { }
        ++granted;
        ++unreleased;
    };
    // Releases one grant, whichever thread got it.
    const auto releaseOne = [&] {
        for (int owed = unreleased; owed > 0;) {
            if (unreleased.compare_exchange_weak(owed, owed - 1)) {
                --holding; // before the release, which may hand the slot on at once
                ++released;
                EXPECT_TRUE(manager.releaseSlot());
                return true;
            }
        }
        return false;
    };
    const QDeadlineTimer deadline(30000);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < kTotal / kThreads; ++i) {
                    manager.requestSlot(onGranted);
                    if ((i + t) % 2 == 0) // some threads pile up requests while others release
                        releaseOne();
                }
                while (released < kTotal && !deadline.hasExpired()) {
                    if (!releaseOne())
                        std::this_thread::yield();
                }
            });
        }
    }
    ASSERT_FALSE(deadline.hasExpired()) << "granted " << granted << " of " << kTotal;
    EXPECT_EQ(granted, kTotal);
    EXPECT_LE(mostHeld, LoadManager::kDefaultMaxConcurrentLoads);
    EXPECT_EQ(manager.activeLoads(), 0);
    EXPECT_EQ(manager.waitingCount(), 0);
}

} // namespace
} // namespace sorvane
