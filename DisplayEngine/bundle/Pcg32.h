#pragma once

#include <QtGlobal>

namespace sorvane {

// PCG XSH-RR 64/32: the one seeded generator behind every reproducible shuffle.
// Bundles must play in the same order on every machine, so the platform's own
// generators are never used for that.
class Pcg32 {
public:
    static constexpr quint64 multiplier = 0x5851F42D4C957F2DULL;
    // Fixed stream of the system; not derived from the seed.
    static constexpr quint64 streamSelector = 0x6D1F1CE5CA5CADEDULL;
    static constexpr quint64 increment = (streamSelector << 1) | 1U;
    static_assert(increment == 0xDA3E39CB94B95BDBULL);

    // Equals Pcg32(seed, streamSelector).
    explicit Pcg32(quint64 seed);
    // The published pcg32_srandom_r seeding on stream `initSequence`.
    Pcg32(quint64 initState, quint64 initSequence);

    quint32 next();
    // Unbiased value in 0 ..< bound; bound 0 stops the program.
    quint32 next(quint32 bound);

    quint64 state() const { return m_state; }

    bool operator==(const Pcg32 &) const = default;

private:
    void step() { m_state = m_state * multiplier + m_increment; }

    quint64 m_state = 0;
    quint64 m_increment = increment;
};

} // namespace sorvane
