#pragma once

#include "bundle/Pcg32.h"

#include <vector>

namespace sorvane {

// Seeded Fisher–Yates shuffle of item positions; the draw order is part of the
// bundle format, since it decides the play order of a seeded bundle.
class BundleShuffler {
public:
    explicit BundleShuffler(quint64 seed);

    // Positions 0 ..< count in shuffled order. A negative count or one beyond
    // 32 bits is a programming error and stops the program.
    std::vector<qsizetype> shuffledIndices(qsizetype count);

    Pcg32 generator;
    quint64 seed;
};

} // namespace sorvane
