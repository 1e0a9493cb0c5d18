#include "bundle/BundleShuffler.h"

#include <limits>
#include <numeric>
#include <utility>

namespace sorvane {

BundleShuffler::BundleShuffler(quint64 seed) : generator(seed), seed(seed) { }

std::vector<qsizetype> BundleShuffler::shuffledIndices(qsizetype count)
{
    if (count < 0)
        qFatal("BundleShuffler::shuffledIndices: negative count %lld", qlonglong(count));
    // Checked before building the positions so an absurd count never allocates.
    if (quint64(count) > std::numeric_limits<quint32>::max())
        qFatal("BundleShuffler::shuffledIndices: count %lld exceeds 32 bits", qlonglong(count));

    std::vector<qsizetype> positions(static_cast<size_t>(count));
    std::iota(positions.begin(), positions.end(), qsizetype(0));
    if (count < 2)
        return positions;

    // From the top down, with a draw for every i even when it picks i itself:
    // skipping that draw would shift every later one.
    for (qsizetype i = count - 1; i >= 1; --i) {
        const auto j = qsizetype(generator.next(quint32(i + 1)));
        if (j != i)
            std::swap(positions[size_t(i)], positions[size_t(j)]);
    }
    return positions;
}

} // namespace sorvane
