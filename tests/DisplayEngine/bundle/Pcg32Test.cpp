#include "bundle/Pcg32.h"
#include "bundle/BundleShuffler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <numeric>
#include <vector>

using sorvane::BundleShuffler;
using sorvane::Pcg32;

namespace {

const uint64_t seeds[] = {0, 42, 0x8000000000000000ULL, UINT64_MAX};

TEST(Pcg32, MatchesThePublishedDemoSequenceAndSeeding)
{
    Pcg32 generator(42, 54);
    for (const uint32_t value : {0xa15c02b7u, 0x7b47f409u, 0xba1d3330u, 0x83d2f293u, 0xbfa4784bu, 0xcbed606eu})
        EXPECT_EQ(generator.next(), value);
    // The system stream is the default, and its seeding collapses to a known state.
    EXPECT_EQ(Pcg32(0).state(), 0x51EBDA032857265AULL);
}

// The published bounded draw: outputs below 2^32 mod bound are thrown away, so the count of
// raw draws (and the state after them) must agree with the reference, not only the values.
TEST(Pcg32, BoundedDrawsStayInRangeAndRejectLikeTheReference)
{
    for (const uint64_t seed : seeds) {
        for (const uint32_t bound : {1u, 3u, 1000u, 0x80000001u, 0xFFFFFFFFu}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " bound " << bound);
            Pcg32 generator(seed);
            Pcg32 raw(seed);
            int rejected = 0;
            for (int i = 0; i < 500; ++i) {
                uint32_t r = raw.next();
                for (; r < (0u - bound) % bound; r = raw.next())
                    ++rejected;
                const uint32_t value = generator.next(bound);
                ASSERT_LT(value, bound);
                ASSERT_EQ(value, r % bound) << "draw " << i;
            }
            EXPECT_EQ(generator, raw);
            if (bound == 0x80000001u)
                EXPECT_GT(rejected, 100); // almost half of all outputs
        }
    }
}

// Fisher–Yates from the top, with a draw for every position even when it picks itself.
TEST(BundleShuffler, IsTheTopDownShuffleWithADrawForEveryPosition)
{
    for (const uint64_t seed : seeds) {
        for (const qsizetype n : {0, 1, 2, 5, 100}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " n " << n);
            std::vector<qsizetype> expected(static_cast<size_t>(n));
            std::iota(expected.begin(), expected.end(), qsizetype(0));
            Pcg32 raw(seed);
            for (qsizetype i = n - 1; i >= 1; --i)
                std::swap(expected[size_t(i)], expected[raw.next(uint32_t(i + 1))]);
            BundleShuffler shuffler(seed);
            EXPECT_EQ(shuffler.shuffledIndices(n), expected);
            EXPECT_EQ(shuffler.generator, raw);
        }
    }
}

TEST(BundleShufflerDeathTest, OutOfRangeRequestsStop)
{
    EXPECT_DEATH(Pcg32(0).next(0), "bound");
    EXPECT_DEATH(BundleShuffler(0).shuffledIndices(-1), "negative");
    EXPECT_DEATH(BundleShuffler(0).shuffledIndices(qsizetype(1) << 32), "32 bits");
}

} // namespace
