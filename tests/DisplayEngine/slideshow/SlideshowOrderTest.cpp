#include "slideshow/SlideshowOrder.h"
#include "slideshow/NaturalPathOrder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>

using namespace sorvane;

namespace {

QList<ImageItem> itemsAt(const QStringList &paths)
{
    QList<ImageItem> items;
    for (const QString &path : paths)
        items.append(ImageItem(QUrl::fromLocalFile(path)));
    return items;
}

QStringList pathsOf(const QList<ImageItem> &items)
{
    QStringList paths;
    for (const ImageItem &item : items)
        paths.append(item.url().toLocalFile());
    return paths;
}

TEST(SlideshowOrder, PathOrderIsNaturalCaseInsensitiveAndStable)
{
    const struct {
        QStringList given;
        QStringList expected;
    } rows[] = {
        {{"/p/file10.jpg", "/p/file2.jpg", "/p/file1.jpg"}, {"/p/file1.jpg", "/p/file2.jpg", "/p/file10.jpg"}},
        {{"/p/b.jpg", "/p/A.jpg", "/p/a2.jpg"}, {"/p/A.jpg", "/p/a2.jpg", "/p/b.jpg"}},
        // Equal but for case or leading zeros: the given order stays.
        {{"/p/B.jpg", "/p/b.jpg", "/p/B.jpg"}, {"/p/B.jpg", "/p/b.jpg", "/p/B.jpg"}},
        {{"/p/img007.jpg", "/p/img7.jpg", "/p/img06.jpg"}, {"/p/img06.jpg", "/p/img007.jpg", "/p/img7.jpg"}},
        // Folders order before their contents' names come into play.
        {{"/p/day10/a.jpg", "/p/day9/z.jpg", "/p/day9/a.jpg"}, {"/p/day9/a.jpg", "/p/day9/z.jpg", "/p/day10/a.jpg"}},
        {{"/p/x 2 y 10.jpg", "/p/x 2 y 9.jpg", "/p/x 10 y 1.jpg"},
            {"/p/x 2 y 9.jpg", "/p/x 2 y 10.jpg", "/p/x 10 y 1.jpg"}},
        {{"/p/a-1.jpg", "/p/a1.jpg", "/p/a.jpg"}, {"/p/a-1.jpg", "/p/a.jpg", "/p/a1.jpg"}},
        {{"/p/f.jpg", "/p/\u00c9t\u00e9.jpg", "/p/e.jpg"}, {"/p/e.jpg", "/p/\u00c9t\u00e9.jpg", "/p/f.jpg"}},
        {{"/p/99999999999999999999.jpg", "/p/100000000000000000000.jpg"},
            {"/p/99999999999999999999.jpg", "/p/100000000000000000000.jpg"}},
    };
    for (const auto &row : rows) {
        const QList<ImageItem> items = itemsAt(row.given);
        const QList<ImageItem> sorted = SlideshowOrder::ordered(items, SortMode::sequential, 0);
        EXPECT_EQ(pathsOf(sorted), row.expected) << row.given.join(", ").toStdString();
        // Stability is about items, not paths: equal paths keep their item order.
        for (qsizetype i = 0; i < sorted.size(); ++i) {
            for (qsizetype j = i + 1; j < sorted.size(); ++j) {
                if (NaturalPathOrder::sortKey(pathsOf(sorted)[i]) == NaturalPathOrder::sortKey(pathsOf(sorted)[j]))
                    EXPECT_LT(items.indexOf(sorted[i]), items.indexOf(sorted[j]));
            }
        }
    }
}

TEST(SlideshowOrder, DateOrdersPreferMetadataThenFileTimesThenPath)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QDateTime base(QDate(2024, 5, 1), QTime(10, 0), Qt::UTC);
    const auto file = [&](const QString &name, int dayOffset) {
        const QString path = dir.filePath(name);
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        EXPECT_TRUE(out.setFileTime(base.addDays(dayOffset), QFileDevice::FileModificationTime));
        return ImageItem(QUrl::fromLocalFile(path));
    };
    ImageItem stated = file(QStringLiteral("stated.jpg"), 0);
    ImageMetadata metadata;
    metadata.modifiedDate = base.addDays(5);
    stated.setMetadata(metadata);
    const QList<ImageItem> items {file(QStringLiteral("late.jpg"), 3), stated, file(QStringLiteral("b10.jpg"), 1),
        file(QStringLiteral("b9.jpg"), 1), ImageItem(QUrl::fromLocalFile(dir.filePath(QStringLiteral("gone.jpg"))))};
    QStringList names;
    for (const ImageItem &item : SlideshowOrder::ordered(items, SortMode::modifiedDate, 0))
        names.append(item.url().fileName());
    EXPECT_EQ(names, QStringList({"b9.jpg", "b10.jpg", "late.jpg", "stated.jpg", "gone.jpg"}));
}

TEST(SlideshowOrder, ShuffleIsUniformAndFollowsTheSeed)
{
    const QList<ImageItem> items = itemsAt({"/a", "/b", "/c"});
    EXPECT_EQ(pathsOf(SlideshowOrder::ordered(items, SortMode::random, 42)),
        pathsOf(SlideshowOrder::ordered(items, SortMode::random, 42)));
    // Each of the six orders of three items about equally often: a biased shuffle
    // (such as swapping with any position) misses this by far.
    std::map<QString, int> seen;
    constexpr int draws = 6000;
    for (quint64 seed = 0; seed < draws; ++seed)
        ++seen[pathsOf(SlideshowOrder::ordered(items, SortMode::random, seed)).join(QString())];
    ASSERT_EQ(seen.size(), 6u);
    for (const auto &[order, count] : seen)
        EXPECT_NEAR(count, draws / 6, 150) << order.toStdString();
}

} // namespace
