#include "slideshow/SlideshowOrder.h"

#include "slideshow/NaturalPathOrder.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace sorvane {

namespace {

// Sorts by precomputed keys, a date (or none) then the natural path key, and rebuilds
// the list: each item is copied once, and a comparison only compares bytes. Equal keys
// keep the given order, which makes the sort stable.
QList<ImageItem> sortedByKeys(const QList<ImageItem> &items, const std::vector<qint64> &dates)
{
    std::string buffer;
    buffer.reserve(size_t(items.size()) * 64);
    std::vector<size_t> ends;
    ends.reserve(size_t(items.size()));
    for (const ImageItem &item : items) {
        NaturalPathOrder::appendSortKey(NaturalPathOrder::pathOf(item.url()), buffer);
        ends.push_back(buffer.size());
    }
    struct Entry {
        qint64 date;
        std::string_view key;
        qsizetype index;
    };
    std::vector<Entry> entries;
    entries.reserve(ends.size());
    size_t begin = 0;
    for (size_t i = 0; i < ends.size(); ++i) {
        entries.push_back(
            {dates.empty() ? 0 : dates[i], std::string_view(buffer).substr(begin, ends[i] - begin), qsizetype(i)});
        begin = ends[i];
    }
    std::sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        if (a.date != b.date)
            return a.date < b.date;
        if (const int order = a.key.compare(b.key))
            return order < 0;
        return a.index < b.index;
    });
    QList<ImageItem> result;
    result.reserve(items.size());
    for (const Entry &entry : entries)
        result.append(items.at(entry.index));
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
    return sortedByKeys(items, {});
}

QList<ImageItem> SlideshowOrder::byDate(QList<ImageItem> items, bool creation)
{
    // Items without any date sort last.
    std::vector<qint64> dates;
    dates.reserve(size_t(items.size()));
    for (const ImageItem &item : items) {
        const QDateTime time = fileTime(item, creation);
        dates.push_back(time.isValid() ? time.toMSecsSinceEpoch() : std::numeric_limits<qint64>::max());
    }
    return sortedByKeys(items, dates);
}

} // namespace sorvane
