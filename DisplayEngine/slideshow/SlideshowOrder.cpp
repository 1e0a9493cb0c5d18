#include "slideshow/SlideshowOrder.h"

#include "slideshow/NaturalPathOrder.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace sorvane {

namespace {

// Sorts by precomputed keys and rebuilds the list: items are moved once, keys are
// compared without recomputing anything.
template <typename Key> QList<ImageItem> sortedByKeys(QList<ImageItem> items, const std::vector<Key> &keys)
{
    std::vector<qsizetype> order(size_t(items.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return keys[a] < keys[b]; });
    QList<ImageItem> result;
    result.reserve(items.size());
    for (const qsizetype index : order)
        result.append(std::move(items[index]));
    return result;
}

QDateTime fileTime(const ImageItem &item, bool creation)
{
    if (const auto &metadata = item.metadata()) {
        const std::optional<QDateTime> &stored = creation ? metadata->createdDate : metadata->modifiedDate;
        if (stored && stored->isValid())
            return *stored;
    }
    if (!item.url().isLocalFile())
        return {};
    const QFileInfo info(item.url().toLocalFile());
    const QDateTime birth = creation ? info.birthTime() : QDateTime();
    return birth.isValid() ? birth : info.lastModified();
}

} // namespace

QList<ImageItem> SlideshowOrder::ordered(QList<ImageItem> items, SortMode mode, quint64 seed)
{
    switch (mode) {
    case SortMode::random:
        shuffle(items, seed);
        return items;
    case SortMode::sequential:
        return byPath(std::move(items));
    case SortMode::creationDate:
        return byDate(std::move(items), true);
    case SortMode::modifiedDate:
        return byDate(std::move(items), false);
    }
    return items;
}

void SlideshowOrder::shuffle(QList<ImageItem> &items, quint64 seed)
{
    std::mt19937_64 random(seed);
    // Fisher-Yates with unbiased bounded draws.
    for (qsizetype i = items.size() - 1; i > 0; --i) {
        std::uniform_int_distribution<qsizetype> pick(0, i);
        items.swapItemsAt(i, pick(random));
    }
}

QList<ImageItem> SlideshowOrder::byPath(QList<ImageItem> items)
{
    std::vector<QString> keys;
    keys.reserve(size_t(items.size()));
    for (const ImageItem &item : items)
        keys.push_back(NaturalPathOrder::sortKey(NaturalPathOrder::pathOf(item.url())));
    return sortedByKeys(std::move(items), keys);
}

QList<ImageItem> SlideshowOrder::byDate(QList<ImageItem> items, bool creation)
{
    // Items without any date sort last.
    std::vector<std::pair<qint64, QString>> keys;
    keys.reserve(size_t(items.size()));
    for (const ImageItem &item : items) {
        const QDateTime time = fileTime(item, creation);
        keys.emplace_back(time.isValid() ? time.toMSecsSinceEpoch() : std::numeric_limits<qint64>::max(),
            NaturalPathOrder::sortKey(NaturalPathOrder::pathOf(item.url())));
    }
    return sortedByKeys(std::move(items), keys);
}

} // namespace sorvane
