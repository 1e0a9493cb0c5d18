#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace sorvane::test {

// Answers every index on this thread, then on four threads at once, each walking the indexes
// `rounds` times from a different start so that different inputs are in work together. Fails
// the test where a thread's answer differs; returns the answers of this thread.
std::vector<std::string> expectSameAnswersOnThreads(
    std::size_t count, const std::function<std::string(std::size_t)> &answer, int rounds = 1);

} // namespace sorvane::test
