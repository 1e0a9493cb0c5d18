#include "bundle/BundleOrdering.h"

#include "bundle/BundleShuffler.h"
#include "bundle/BundleTimestamp.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace sorvane {

namespace {

std::vector<qsizetype> manifestOrder(qsizetype count)
{
    std::vector<qsizetype> positions(static_cast<size_t>(count));
    std::iota(positions.begin(), positions.end(), qsizetype(0));
    return positions;
}

BundleOrderingResult orderByDate(const std::vector<BundleItem> &items, std::optional<QString> BundleItem::*key)
{
    const auto count = qsizetype(items.size());
    // Milliseconds since the epoch; every slot is overwritten before the sort.
    constexpr qint64 distantPast = std::numeric_limits<qint64>::min();
    std::vector<qint64> dates(size_t(count), distantPast);
    for (qsizetype i = 0; i < count; ++i) {
        const std::optional<QDateTime> date = BundleTimestamp::parse(items[size_t(i)].*key);
        // One item without a date makes the whole sort meaningless: stop at once.
        if (!date)
            return {manifestOrder(count), true};
        dates[size_t(i)] = date->toMSecsSinceEpoch();
    }

    std::vector<qsizetype> positions = manifestOrder(count);
    // Ties go by position explicitly so the order never rests on the sort's stability.
    std::sort(positions.begin(), positions.end(), [&dates](qsizetype a, qsizetype b) {
        const qint64 dateA = dates[size_t(a)];
        const qint64 dateB = dates[size_t(b)];
        return dateA != dateB ? dateA < dateB : a < b;
    });
    return {std::move(positions), false};
}

} // namespace

BundleOrderingResult BundleOrdering::order(
    const std::vector<BundleItem> &items, BundleSort sort, std::optional<quint64> shuffleSeed)
{
    switch (sort) {
    case BundleSort::sequential:
        return {manifestOrder(qsizetype(items.size())), false};
    case BundleSort::random:
        // A bundle without a seed still plays in one fixed order: that of seed 0.
        return {BundleShuffler(shuffleSeed.value_or(0)).shuffledIndices(qsizetype(items.size())), false};
    case BundleSort::created:
        return orderByDate(items, &BundleItem::sourceCreatedUtc);
    case BundleSort::modified:
        return orderByDate(items, &BundleItem::sourceModifiedUtc);
    }
    Q_UNREACHABLE();
    return {};
}

} // namespace sorvane
