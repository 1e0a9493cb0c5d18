#include "bundle/Pcg32.h"

#include <bit>

namespace sorvane {

// Seeding on the system stream collapses to state = seed × multiplier + 0x51EBDA032857265A.
static_assert(Pcg32::increment * Pcg32::multiplier + Pcg32::increment == 0x51EBDA032857265AULL);

Pcg32::Pcg32(quint64 seed) : Pcg32(seed, streamSelector) { }

Pcg32::Pcg32(quint64 initState, quint64 initSequence) : m_state(0), m_increment((initSequence << 1) | 1U)
{
    step();
    m_state += initState;
    step();
}

quint32 Pcg32::next()
{
    // The output comes from the state before the step.
    const quint64 old = m_state;
    step();
    const auto xorShifted = quint32(((old >> 18) ^ old) >> 27);
    const auto rotation = int(old >> 59);
    return std::rotr(xorShifted, rotation);
}

quint32 Pcg32::next(quint32 bound)
{
    if (bound == 0)
        qFatal("Pcg32::next: bound must not be 0");
    // Rejecting the lowest (2^32 mod bound) outputs removes the modulo bias; other
    // implementations agree draw for draw only because they reject the same values.
    const quint32 threshold = (quint32(0) - bound) % bound;
    for (;;) {
        const quint32 value = next();
        if (value >= threshold)
            return value % bound;
    }
}

} // namespace sorvane
