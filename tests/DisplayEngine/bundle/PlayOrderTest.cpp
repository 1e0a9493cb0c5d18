#include "bundle/BundleOrdering.h"
#include "bundle/BundleShuffler.h"
#include "bundle/BundleTimestamp.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using namespace sorvane;

namespace {

using Positions = std::vector<qsizetype>;

QDateTime utc(int hour, int minute = 0, int second = 0, int ms = 0)
{
    return QDateTime(QDate(2024, 5, 1), QTime(hour, minute, second, ms), Qt::UTC);
}

TEST(PlayOrderSort, WireValuesAreExactAndCaseSensitive)
{
    for (const BundleSort sort : allBundleSorts)
        EXPECT_EQ(bundleSortFromWire(toWire(sort)), sort);
    EXPECT_EQ(toWire(BundleSort::modified), QStringLiteral("modified"));
    for (const char *unknown : {"", "Random", "MODIFIED", " created", "sequential ", "shuffle"})
        EXPECT_EQ(bundleSortFromWire(QString::fromLatin1(unknown)), std::nullopt) << unknown;
}

TEST(BundleTimestamp, Parse)
{
    const struct {
        std::optional<QString> text;
        std::optional<QDateTime> expected;
    } table[] = {
        {std::nullopt, std::nullopt},
        {QString(), std::nullopt},
        {QStringLiteral("    "), std::nullopt},
        {QStringLiteral(" \t "), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00Z"), utc(12)},
        {QStringLiteral("2024-05-01T12:00:00.5Z"), utc(12, 0, 0, 500)},
        {QStringLiteral("2024-05-01T12:00:00.250Z"), utc(12, 0, 0, 250)},
        {QStringLiteral("2024-05-01T14:00:00+02:00"), utc(12)},
        {QStringLiteral("2024-05-01T09:30:00.125-02:30"), utc(12, 0, 0, 125)},
        // Forms Qt alone would accept: no zone (local time), date only, no seconds.
        {QStringLiteral("2024-05-01 12:00:00"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00"), std::nullopt},
        {QStringLiteral("2024-05-01"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00Z"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00+0200"), std::nullopt},
        {QStringLiteral("2024-02-30T12:00:00Z"), std::nullopt},
        {QStringLiteral("2024-05-01T25:00:00Z"), std::nullopt},
        // Trimming only decides blankness; padded text is parsed as stored.
        {QStringLiteral(" 2024-05-01T12:00:00Z"), std::nullopt},
        {QStringLiteral("2024-05-01T12:00:00Z\n"), std::nullopt},
        {QStringLiteral("yesterday"), std::nullopt},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.text.value_or(QStringLiteral("<absent>")).toStdString());
        const std::optional<QDateTime> parsed = BundleTimestamp::parse(row.text);
        ASSERT_EQ(parsed.has_value(), row.expected.has_value());
        if (parsed) {
            EXPECT_EQ(*parsed, *row.expected);
            EXPECT_EQ(parsed->timeSpec(), Qt::UTC);
        }
    }
}

TEST(BundleTimestamp, FormatIsUtcWithoutFraction)
{
    const QDateTime offset(QDate(2024, 5, 1), QTime(14, 0), Qt::OffsetFromUTC, 2 * 3600);
    const std::pair<QDateTime, const char *> table[]
        = {{utc(12), "2024-05-01T12:00:00Z"}, {utc(12, 0, 0, 250), "2024-05-01T12:00:00Z"},
            {offset, "2024-05-01T12:00:00Z"}, {utc(23, 59, 59, 999), "2024-05-01T23:59:59Z"}};
    for (const auto &[date, expected] : table) {
        EXPECT_EQ(BundleTimestamp::format(date), QString::fromLatin1(expected));
        EXPECT_EQ(BundleTimestamp::parse(BundleTimestamp::format(date)), date.addMSecs(-date.time().msec()));
    }
}

std::optional<QString> text(const char *value)
{
    return value ? std::optional<QString>(QString::fromLatin1(value)) : std::nullopt;
}

BundleItem itemDated(const char *created, const char *modified)
{
    BundleItem item;
    item.sourceCreatedUtc = text(created);
    item.sourceModifiedUtc = text(modified);
    return item;
}

std::vector<BundleItem> itemsCreated(std::initializer_list<const char *> created)
{
    std::vector<BundleItem> items;
    for (const char *value : created)
        items.push_back(itemDated(value, nullptr));
    return items;
}

std::vector<BundleItem> itemsModified(std::initializer_list<const char *> modified)
{
    std::vector<BundleItem> items;
    for (const char *value : modified)
        items.push_back(itemDated(nullptr, value));
    return items;
}

TEST(BundleOrdering, EmptyAndSingleListsForEverySort)
{
    const std::vector<BundleItem> one = {itemDated("2024-05-01T12:00:00Z", "2024-05-01T12:00:00Z")};
    for (const BundleSort sort : allBundleSorts) {
        SCOPED_TRACE(toWire(sort).toStdString());
        for (const std::optional<quint64> seed : {std::optional<quint64>(), std::optional<quint64>(99)}) {
            EXPECT_EQ(BundleOrdering::order({}, sort, seed), (BundleOrderingResult {{}, false}));
            EXPECT_EQ(BundleOrdering::order(one, sort, seed), (BundleOrderingResult {{0}, false}));
        }
    }
}

TEST(BundleOrdering, RandomIsTheSeededShuffle)
{
    const std::vector<BundleItem> items(12);
    const BundleOrderingResult unseeded = BundleOrdering::order(items, BundleSort::random, std::nullopt);
    EXPECT_EQ(unseeded, BundleOrdering::order(items, BundleSort::random, 0));
    EXPECT_FALSE(unseeded.fellBackToManifestOrder);
    for (const quint64 seed : {quint64(0), quint64(7), ~quint64(0)}) {
        const BundleOrderingResult seeded = BundleOrdering::order(items, BundleSort::random, seed);
        EXPECT_EQ(seeded.positions, BundleShuffler(seed).shuffledIndices(12)) << seed;
        EXPECT_FALSE(seeded.fellBackToManifestOrder);
    }
    EXPECT_NE(BundleOrdering::order(items, BundleSort::random, 7).positions,
        BundleOrdering::order(items, BundleSort::random, 8).positions);
}

TEST(BundleOrdering, DateSortsAscendWithTiesByPosition)
{
    const struct {
        const char *name;
        std::vector<BundleItem> items;
        BundleSort sort;
        Positions expected;
    } table[] = {
        {"distinct", itemsCreated({"2024-05-03T00:00:00Z", "2024-05-01T00:00:00Z", "2024-05-02T00:00:00Z"}),
            BundleSort::created, {1, 2, 0}},
        {"ties",
            itemsCreated(
                {"2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z", "2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z"}),
            BundleSort::created, {1, 3, 0, 2}},
        {"same instant, other notation", itemsModified({"2024-05-01T14:00:00+02:00", "2024-05-01T12:00:00Z"}),
            BundleSort::modified, {0, 1}},
        {"offset moves it earlier", itemsModified({"2024-05-01T12:00:00Z", "2024-05-01T13:00:00+02:00"}),
            BundleSort::modified, {1, 0}},
        {"fraction counts", itemsModified({"2024-05-01T12:00:00.5Z", "2024-05-01T12:00:00Z"}), BundleSort::modified,
            {1, 0}},
        {"created key only",
            {itemDated("2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z"),
                itemDated("2024-05-01T00:00:00Z", "2024-05-02T00:00:00Z")},
            BundleSort::created, {1, 0}},
        {"modified key only",
            {itemDated("2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z"),
                itemDated("2024-05-01T00:00:00Z", "2024-05-02T00:00:00Z")},
            BundleSort::modified, {0, 1}},
        {"sequential ignores seed and dates", itemsCreated({"2024-05-03T00:00:00Z", nullptr, "2024-05-01T00:00:00Z"}),
            BundleSort::sequential, {0, 1, 2}},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BundleOrdering::order(row.items, row.sort, 5), (BundleOrderingResult {row.expected, false}));
    }
}

TEST(BundleOrdering, ManyTiesKeepManifestOrderWithinEachDate)
{
    // Large enough that an unstable sort would scramble equal dates.
    const char *dates[] = {"2024-05-03T00:00:00Z", "2024-05-01T00:00:00Z", "2024-05-02T00:00:00Z"};
    std::vector<BundleItem> items;
    for (int i = 0; i < 300; ++i)
        items.push_back(itemDated(dates[i % 3], nullptr));
    Positions expected;
    for (const int bucket : {1, 2, 0}) {
        for (qsizetype i = bucket; i < 300; i += 3)
            expected.push_back(i);
    }
    EXPECT_EQ(
        BundleOrdering::order(items, BundleSort::created, std::nullopt), (BundleOrderingResult {expected, false}));
}

TEST(BundleOrdering, MissingDateFallsBackToManifestOrder)
{
    const std::optional<const char *> badKeys[] = {std::nullopt, "", "   ", "2024-05-01 12:00:00", "soon"};
    for (const BundleSort sort : {BundleSort::created, BundleSort::modified}) {
        for (const auto &bad : badKeys) {
            SCOPED_TRACE(testing::Message() << toWire(sort).toStdString() << " / " << bad.value_or("<absent>"));
            // Descending dates, so a real sort would reverse them.
            std::vector<BundleItem> items;
            for (const char *date : {"2024-05-05T00:00:00Z", "2024-05-04T00:00:00Z", "2024-05-03T00:00:00Z",
                     "2024-05-02T00:00:00Z", "2024-05-01T00:00:00Z"})
                items.push_back(itemDated(date, date));
            auto &key = sort == BundleSort::created ? items[2].sourceCreatedUtc : items[2].sourceModifiedUtc;
            key = bad ? text(*bad) : std::nullopt;
            EXPECT_EQ(BundleOrdering::order(items, sort, 3), (BundleOrderingResult {{0, 1, 2, 3, 4}, true}));
        }
    }
    EXPECT_EQ(
        BundleOrdering::order({BundleItem()}, BundleSort::created, std::nullopt), (BundleOrderingResult {{0}, true}));
}

} // namespace
