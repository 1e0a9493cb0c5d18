#include "bundle/Pcg32.h"
#include "bundle/BundleShuffler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using sorvane::BundleShuffler;
using sorvane::Pcg32;

namespace {

// The published minimal PCG32 C code, transcribed as is, as an oracle.
struct pcg32_random_t {
    uint64_t state;
    uint64_t inc;
};

uint32_t pcg32_random_r(pcg32_random_t *rng)
{
    uint64_t oldstate = rng->state;
    rng->state = oldstate * 6364136223846793005ULL + rng->inc;
    uint32_t xorshifted = uint32_t(((oldstate >> 18u) ^ oldstate) >> 27u);
    uint32_t rot = uint32_t(oldstate >> 59u);
    return (xorshifted >> rot) | (xorshifted << ((-rot) & 31));
}

void pcg32_srandom_r(pcg32_random_t *rng, uint64_t initstate, uint64_t initseq)
{
    rng->state = 0U;
    rng->inc = (initseq << 1u) | 1u;
    pcg32_random_r(rng);
    rng->state += initstate;
    pcg32_random_r(rng);
}

int referenceDraws = 0; // outputs consumed by pcg32_boundedrand_r, to see rejections happen

uint32_t pcg32_boundedrand_r(pcg32_random_t *rng, uint32_t bound)
{
    uint32_t threshold = -bound % bound;
    for (;;) {
        uint32_t r = pcg32_random_r(rng);
        ++referenceDraws;
        if (r >= threshold)
            return r % bound;
    }
}

constexpr uint64_t systemStream = 0x6D1F1CE5CA5CADEDULL;

pcg32_random_t referenceFor(uint64_t seed)
{
    pcg32_random_t rng;
    pcg32_srandom_r(&rng, seed, systemStream);
    return rng;
}

const uint64_t seeds[] = {0, 1, 42, 0xDEADBEEFULL, 0x8000000000000000ULL, UINT64_MAX};

TEST(Pcg32, MatchesPublishedDemoVectors)
{
    const uint32_t expected[] = {0xa15c02b7, 0x7b47f409, 0xba1d3330, 0x83d2f293, 0xbfa4784b, 0xcbed606e};
    Pcg32 generator(42, 54);
    pcg32_random_t reference;
    pcg32_srandom_r(&reference, 42, 54);
    for (const uint32_t value : expected) {
        EXPECT_EQ(pcg32_random_r(&reference), value); // the oracle itself is right
        EXPECT_EQ(generator.next(), value);
    }
}

TEST(Pcg32, MatchesReferenceOverLongRuns)
{
    // Seeding on the system stream, the default, and on others.
    EXPECT_EQ(Pcg32(0).state(), 0x51EBDA032857265AULL);
    const struct {
        uint64_t state, sequence;
    } streams[] = {{0, systemStream}, {42, 54}, {1, 0}, {UINT64_MAX, UINT64_MAX}, {0xDEADBEEFULL, systemStream}};
    for (const auto &stream : streams) {
        if (stream.sequence == systemStream)
            EXPECT_EQ(Pcg32(stream.state), Pcg32(stream.state, systemStream));
        SCOPED_TRACE(stream.state);
        Pcg32 generator(stream.state, stream.sequence);
        pcg32_random_t reference;
        pcg32_srandom_r(&reference, stream.state, stream.sequence);
        for (int i = 0; i < 5000; ++i)
            ASSERT_EQ(generator.next(), pcg32_random_r(&reference)) << "output " << i;
        EXPECT_EQ(generator.state(), reference.state);
    }
}

TEST(Pcg32, BoundedDrawsRejectLikeReference)
{
    // 0x80000001 rejects almost half of all outputs, so draw counts must agree too.
    const uint32_t bounds[] = {1, 2, 3, 7, 10, 1000, 0x7FFFFFFF, 0x80000001, 0xFFFFFFFF};
    for (const uint64_t seed : seeds) {
        for (const uint32_t bound : bounds) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " bound " << bound);
            Pcg32 generator(seed);
            pcg32_random_t reference = referenceFor(seed);
            referenceDraws = 0;
            const int calls = 2000;
            for (int i = 0; i < calls; ++i) {
                const uint32_t value = generator.next(bound);
                ASSERT_LT(value, bound);
                ASSERT_EQ(value, pcg32_boundedrand_r(&reference, bound)) << "draw " << i;
            }
            EXPECT_EQ(generator.state(), reference.state);
            if (bound == 0x80000001)
                EXPECT_GT(referenceDraws, calls + calls / 4);
        }
    }
}

// Fisher–Yates from the top, a draw for every i, on the reference generator.
std::vector<long long> referenceShuffle(uint64_t seed, long long n, pcg32_random_t *rng, int *selfPicks)
{
    std::vector<long long> positions;
    for (long long i = 0; i < n; ++i)
        positions.push_back(i);
    *rng = referenceFor(seed);
    for (long long i = n - 1; i >= 1; --i) {
        const long long j = pcg32_boundedrand_r(rng, uint32_t(i + 1));
        if (j == i)
            ++*selfPicks;
        else
            std::swap(positions[i], positions[j]);
    }
    return positions;
}

TEST(BundleShuffler, MatchesReferenceShuffle)
{
    int selfPicks = 0;
    for (const uint64_t seed : seeds) {
        for (const long long n : {2LL, 3LL, 5LL, 8LL, 100LL, 1000LL}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " n " << n);
            pcg32_random_t reference;
            const std::vector<long long> expected = referenceShuffle(seed, n, &reference, &selfPicks);
            BundleShuffler shuffler(seed);
            const std::vector<qsizetype> actual = shuffler.shuffledIndices(qsizetype(n));
            EXPECT_EQ(std::vector<long long>(actual.begin(), actual.end()), expected);
            // Same final state: a draw was made for every i, including j == i.
            EXPECT_EQ(shuffler.generator.state(), reference.state);
            EXPECT_EQ(shuffler.seed, seed);
        }
    }
    EXPECT_GT(selfPicks, 0);
}

TEST(BundleShuffler, FewerThanTwoMakesNoDraw)
{
    for (const qsizetype n : {0, 1}) {
        BundleShuffler shuffler(7);
        const std::vector<qsizetype> expected = n == 0 ? std::vector<qsizetype> {} : std::vector<qsizetype> {0};
        EXPECT_EQ(shuffler.shuffledIndices(n), expected);
        EXPECT_EQ(shuffler.generator, Pcg32(7));
    }
}

TEST(BundleShufflerDeathTest, OutOfRangeRequestsStop)
{
    EXPECT_DEATH(Pcg32(0).next(0), "bound");
    EXPECT_DEATH(BundleShuffler(0).shuffledIndices(-1), "negative");
    EXPECT_DEATH(BundleShuffler(0).shuffledIndices(qsizetype(1) << 32), "32 bits");
}

} // namespace
