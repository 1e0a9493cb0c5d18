#include "bundle/BundleOrdering.h"
#include "bundle/BundleShuffler.h"
#include "bundle/BundleTimestamp.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using namespace sorvane;

namespace {

QDateTime utc(int hour, int ms = 0)
{
    return QDateTime(QDate(2024, 5, 1), QTime(hour, 0, 0, ms), Qt::UTC);
}

TEST(BundleTimestamp, ParsesOnlyTheInternetDateTimeForm)
{
    const struct {
        std::optional<QString> text;
        std::optional<QDateTime> expected;
    } table[] = {
        {std::nullopt, std::nullopt},
        {QStringLiteral(" \t "), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00Z"), utc(12)},
        {QStringLiteral("2024-05-01T12:00:00.5Z"), utc(12, 500)},
        {QStringLiteral("2024-05-01T14:00:00+02:00"), utc(12)},
        {QStringLiteral("2024-05-01T09:30:00.125-02:30"), utc(12, 125)},
        // Forms Qt alone would accept: no zone (local time), date only, no seconds.
        {QStringLiteral("2024-05-01T12:00:00"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00Z"), std::nullopt},
        {QStringLiteral("2024-02-30T12:00:00Z"), std::nullopt},
        {QStringLiteral("2024-05-01"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00+0200"), std::nullopt},
        {QStringLiteral("2024-05-01T25:00:00Z"), std::nullopt},
        // Trimming only decides blankness; padded text is parsed as stored.
        {QStringLiteral(" 2024-05-01T12:00:00Z"), std::nullopt},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.text.value_or(QStringLiteral("<absent>")).toStdString());
        const std::optional<QDateTime> parsed = BundleTimestamp::parse(row.text);
        EXPECT_EQ(parsed, row.expected);
        if (parsed)
            EXPECT_EQ(parsed->timeSpec(), Qt::UTC);
    }
    // Written back in UTC without the fraction.
    const QDateTime offset(QDate(2024, 5, 1), QTime(14, 0, 0, 250), Qt::OffsetFromUTC, 2 * 3600);
    EXPECT_EQ(BundleTimestamp::format(offset), QStringLiteral("2024-05-01T12:00:00Z"));
}

BundleItem dated(const char *created, const char *modified = nullptr)
{
    BundleItem item;
    if (created)
        item.sourceCreatedUtc = QString::fromLatin1(created);
    if (modified)
        item.sourceModifiedUtc = QString::fromLatin1(modified);
    return item;
}

TEST(BundleOrdering, SortsByDateAscendingWithTiesByPositionElseManifestOrder)
{
    const char *d1 = "2024-05-01T00:00:00Z", *d2 = "2024-05-02T00:00:00Z", *d3 = "2024-05-03T00:00:00Z";
    const struct {
        const char *name;
        std::vector<BundleItem> items;
        BundleSort sort;
        BundleOrderingResult expected;
    } table[] = {
        {"empty", {}, BundleSort::created, {{}, false}},
        {"created", {dated(d3), dated(d1), dated(d2)}, BundleSort::created, {{1, 2, 0}, false}},
        {"ties", {dated(d2), dated(d1), dated(d2), dated(d1)}, BundleSort::created, {{1, 3, 0, 2}, false}},
        {"modified key only", {dated(d2, d1), dated(d1, d2)}, BundleSort::modified, {{0, 1}, false}},
        // Compared as instants, not as text.
        {"same instant, other notation",
            {dated(nullptr, "2024-05-01T14:00:00+02:00"), dated(nullptr, "2024-05-01T12:00:00Z")}, BundleSort::modified,
            {{0, 1}, false}},
        {"sequential ignores dates", {dated(d3), dated(nullptr), dated(d1)}, BundleSort::sequential,
            {{0, 1, 2}, false}},
        // One missing or unreadable date and the whole sort gives way to manifest order.
        {"missing date", {dated(d3), dated(nullptr), dated(d1)}, BundleSort::created, {{0, 1, 2}, true}},
        {"unreadable date", {dated(d3, d3), dated(d2, "soon"), dated(d1, d1)}, BundleSort::modified, {{0, 1, 2}, true}},
    };
    for (const auto &row : table)
        EXPECT_EQ(BundleOrdering::order(row.items, row.sort, 5), row.expected) << row.name;

    // Large enough that an unstable sort would scramble equal dates.
    const char *cycle[] = {d3, d1, d2};
    std::vector<BundleItem> many;
    std::vector<qsizetype> expected;
    for (int i = 0; i < 300; ++i)
        many.push_back(dated(cycle[i % 3]));
    for (const int bucket : {1, 2, 0}) {
        for (qsizetype i = bucket; i < 300; i += 3)
            expected.push_back(i);
    }
    EXPECT_EQ(BundleOrdering::order(many, BundleSort::created, std::nullopt).positions, expected);
}

TEST(BundleOrdering, RandomIsTheSeededShuffleAndSeedZeroWithoutASeed)
{
    const std::vector<BundleItem> items(12);
    EXPECT_EQ(BundleOrdering::order(items, BundleSort::random, std::nullopt),
        (BundleOrderingResult {BundleShuffler(0).shuffledIndices(12), false}));
    EXPECT_EQ(BundleOrdering::order(items, BundleSort::random, ~quint64(0)).positions,
        BundleShuffler(~quint64(0)).shuffledIndices(12));
}

} // namespace
