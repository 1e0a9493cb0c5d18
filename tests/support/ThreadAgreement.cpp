#include "support/ThreadAgreement.h"

#include <gtest/gtest.h>

#include <array>
#include <latch>
#include <thread>

namespace sorvane::test {

std::vector<std::string> expectSameAnswersOnThreads(
    std::size_t count, const std::function<std::string(std::size_t)> &answer, int rounds)
{
    std::vector<std::string> sequential;
    for (std::size_t i = 0; i < count; ++i)
        sequential.push_back(answer(i));
    constexpr int threadCount = 4;
    const auto order = [&](int t, std::size_t i) { return (i + std::size_t(t) * 3) % count; };
    std::array<std::vector<std::string>, threadCount> seen;
    std::latch start(threadCount);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([&, t] {
                start.arrive_and_wait();
                for (std::size_t i = 0; i < count * std::size_t(rounds); ++i)
                    seen[t].push_back(answer(order(t, i)));
            });
        }
    }
    for (int t = 0; t < threadCount; ++t) {
        std::vector<std::string> expected;
        for (std::size_t i = 0; i < count * std::size_t(rounds); ++i)
            expected.push_back(sequential[order(t, i)]);
        EXPECT_EQ(seen[t], expected) << "thread " << t;
    }
    return sequential;
}

} // namespace sorvane::test
