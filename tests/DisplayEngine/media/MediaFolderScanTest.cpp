// The folder scan over real temporary trees: what it finds, in which order and batches, what
// it counts as unreadable, and that a cancel stops the batches.
#include "media/MediaFolderScan.h"
#include "media/AnimationHeader.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace sorvane;

namespace {

// Queued results need an event loop; one application serves the whole program.
void ensureApplication()
{
    static int argc = 1;
    static char name[] = "media_tests";
    static char *argv[] = {name, nullptr};
    if (!QCoreApplication::instance())
        new QCoreApplication(argc, argv);
}

const QByteArray loopingGif = QByteArray("GIF89a\x01\x00\x01\x00\x00\x00\x00", 13)
    + QByteArray("\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
const QByteArray animatedWebp = QByteArray("RIFF\x20\x00\x00\x00WEBPVP8X\x0A\x00\x00\x00\x02\x00\x00\x00", 24);

struct Scanned {
    QList<QList<ImageItem>> batches;
    MediaFolderScanCounts counts;
};

// Runs a scan to its end; `onBatch` may act on the scan (cancel it) as batches arrive.
Scanned runScan(MediaFolderScan::Request request, const std::function<void(MediaFolderScan &)> &onBatch = {})
{
    ensureApplication();
    Scanned result;
    MediaFolderScan scan;
    QEventLoop loop;
    QObject::connect(&scan, &MediaFolderScan::batchFound, [&](const QList<ImageItem> &items) {
        result.batches.append(items);
        if (onBatch)
            onBatch(scan);
    });
    QObject::connect(&scan, &MediaFolderScan::finished, [&](const MediaFolderScanCounts &counts) {
        result.counts = counts;
        loop.quit();
    });
    EXPECT_TRUE(scan.start(request));
    EXPECT_FALSE(scan.start(request)) << "a second scan while one runs";
    loop.exec();
    EXPECT_FALSE(scan.isRunning());
    return result;
}

// "path" a photo (content by name), "path/" a folder, "path->target" a symbolic link
// ("@outside" stands for a folder beside the tree holding out.jpg), "!path" takes every permission away.
void build(const QString &root, const QString &outside, const QStringList &entries)
{
    QDir().mkpath(outside);
    QFile out(outside + "/out.jpg");
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    for (const QString &entry : entries) {
        if (entry.startsWith('!')) {
            ASSERT_TRUE(QFile::setPermissions(root + '/' + entry.mid(1), {}));
        } else if (entry.contains("->")) {
            const QStringList parts = entry.split("->");
            const QString target = QString(parts[1]).replace("@outside", outside);
            ASSERT_TRUE(QFile::link(target, root + '/' + parts[0]));
        } else if (entry.endsWith('/')) {
            ASSERT_TRUE(QDir().mkpath(root + '/' + entry));
        } else {
            const QString path = root + '/' + entry;
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(entry.endsWith("moves.gif") ? loopingGif
                    : entry.endsWith("moves.webp") ? animatedWebp
                                                   : QByteArray("not really a picture"));
        }
    }
}

// An item as the table spells it: relative path, then "~video", "~gif" or "~webp" when it is one.
QString spelled(const ImageItem &item)
{
    QString text = item.relativePath();
    if (item.mediaType() == MediaType::video)
        text += "~video";
    if (item.animationType() == AnimationType::gif && item.isAnimated())
        text += "~gif";
    if (item.animationType() == AnimationType::webp && item.isAnimated())
        text += "~webp";
    return text;
}

TEST(MediaFolderScan, FindsMediaByTheExportsRules)
{
    struct Row {
        const char *name;
        QStringList tree;
        QStringList found;
        MediaFolderScanCounts counts;
        bool needsPermissions = false;
        bool includeVideos = true;
    };
    const std::vector<Row> rows = {
        {"nested, files before folders, names sorted by their bytes",
            {"b.jpg", "a/z.png", "a/deeper/c.mov", "C.heic", "notes.txt", "fake.jpg"},
            {"C.heic", "b.jpg", "fake.jpg", "a/z.png", "a/deeper/c.mov~video"}, {4, 1}},
        {"hidden folders and files skipped", {".cache/x.jpg", ".y.jpg", "shown.png"}, {"shown.png"}, {1, 0}},
        {"a link loop ends", {"sub/p.jpg", "sub/back->..", "sub/self->."}, {"sub/p.jpg"}, {1, 0}},
        {"links leading outside are not followed", {"in.jpg", "away->@outside", "file.jpg->@outside/out.jpg"},
            {"in.jpg"}, {1, 0}},
        {"links within are followed, their files once", {"sub/in.jpg", "again->sub", "same.jpg->sub/in.jpg"},
            {"same.jpg"}, {1, 0}},
        {"a bundle inside is left alone", {"show/bundle.json", "show/media/x.jpg", "y.jpg"}, {"y.jpg"}, {1, 0}},
        {"animation read from the header only", {"moves.gif", "still.gif", "moves.webp", "still.webp", "clip.webm"},
            {"clip.webm~video", "moves.gif~gif", "moves.webp~webp", "still.gif", "still.webp"}, {4, 1}},
        {"videos left out when not wanted", {"a.mp4", "b.jpg"}, {"b.jpg"}, {1, 0}, false, false},
        {"an unreadable folder is counted", {"locked/x.jpg", "open/y.jpg", "!locked"}, {"open/y.jpg"}, {1, 0, 1, 0},
            true},
        {"an unreadable file is counted", {"x.jpg", "y.jpg", "!x.jpg"}, {"y.jpg"}, {1, 0, 0, 1}, true},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        if (row.needsPermissions && geteuid() == 0)
            continue; // root reads everything
        QTemporaryDir tmp;
        const QString root = tmp.filePath("root");
        QDir().mkpath(root);
        build(root, tmp.filePath("outside"), row.tree);
        const Scanned scanned = runScan({.folders = {root}, .includeVideos = row.includeVideos});
        QStringList found;
        qint64 index = 0;
        for (const auto &batch : scanned.batches) {
            for (const ImageItem &item : batch) {
                EXPECT_EQ(item.originalIndex(), index++);
                EXPECT_EQ(item.url().toLocalFile(), QDir(root).filePath(item.relativePath()));
                found.append(spelled(item));
            }
        }
        EXPECT_EQ(found.join(" | ").toStdString(), row.found.join(" | ").toStdString());
        EXPECT_EQ(scanned.counts, row.counts);
        for (const QString &entry : row.tree) // let the temporary folder remove itself
            if (entry.startsWith('!'))
                QFile::setPermissions(
                    root + '/' + entry.mid(1), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST(MediaFolderScan, PickedFilesComeFirstThenBatchesGrowInOrder)
{
    QTemporaryDir tmp;
    QStringList tree {"one/picked.png"};
    for (int i = 0; i < 19; ++i)
        tree.append(QString("root/p%1.jpg").arg(i, 2, 10, QChar('0')));
    build(tmp.path(), tmp.filePath("outside"), tree);
    const Scanned scanned
        = runScan({{tmp.filePath("root")}, {tmp.filePath("one/picked.png"), tmp.filePath("gone.jpg")}});
    std::vector<qsizetype> sizes;
    QStringList order;
    for (const auto &batch : scanned.batches) {
        sizes.push_back(batch.size());
        for (const ImageItem &item : batch)
            order.append(item.relativePath());
    }
    EXPECT_EQ(sizes, (std::vector<qsizetype> {1, 2, 4, 8, 5}));
    tree.replaceInStrings(QRegularExpression("^[a-z]+/"), "");
    EXPECT_EQ(order.join(" ").toStdString(), tree.join(" ").toStdString());
    EXPECT_EQ(scanned.counts, (MediaFolderScanCounts {20, 0, 0, 1}));
}

TEST(MediaFolderScan, ACancelStopsTheBatchesAndSaysSo)
{
    QTemporaryDir tmp;
    QStringList tree;
    for (int i = 0; i < 200; ++i)
        tree.append(QString("d%1/p.jpg").arg(i));
    build(tmp.filePath("root"), tmp.filePath("outside"), tree);
    const Scanned scanned = runScan({.folders = {tmp.filePath("root")}}, [](MediaFolderScan &scan) { scan.cancel(); });
    EXPECT_EQ(scanned.batches.size(), 1);
    EXPECT_TRUE(scanned.counts.cancelled);
}

TEST(AnimationHeader, TellsMovingFromStillByTheFirstBytes)
{
    const QByteArray gifStart("GIF89a\x01\x00\x01\x00\x00\x00\x00", 13);
    const QByteArray image("\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x01\x00\x00", 14);
    const QByteArray webpStart("RIFF\x20\x00\x00\x00WEBP", 12);
    const struct {
        const char *name;
        QByteArray head;
        AnimationType expected;
    } rows[] = {
        {"looping GIF", loopingGif, AnimationType::gif},
        {"old-style looping GIF",
            gifStart
                + QByteArray("\x21\xFF\x0B"
                             "ANIMEXTS1.0\x00",
                    15),
            AnimationType::gif},
        {"two images, no loop block", gifStart + image + image + "\x3B", AnimationType::gif},
        {"one image then the trailer", gifStart + image + "\x3B", AnimationType::none},
        {"comment before one image", gifStart + QByteArray("\x21\xFE\x02hi\x00", 6) + image + "\x3B",
            AnimationType::none},
        {"global colour table skipped",
            QByteArray("GIF87a\x01\x00\x01\x00\x80\x00\x00", 13) + QByteArray(6, '\x21') + image + image,
            AnimationType::gif},
        {"cut short inside a block", gifStart + QByteArray("\x21\xF9\x04\x00", 4), AnimationType::none},
        {"a sub-block length past the end", gifStart + "\x2C" + QByteArray(8, '\0') + "\xFF", AnimationType::none},
        {"animated WebP", animatedWebp, AnimationType::webp},
        {"extended still WebP", webpStart + QByteArray("VP8X\x0A\x00\x00\x00\x10\x00\x00\x00", 12),
            AnimationType::none},
        {"simple WebP", webpStart + QByteArray("VP8 \x0A\x00\x00\x00\x02\x00\x00\x00", 12), AnimationType::none},
        {"RIFF of another kind", QByteArray("RIFF\x20\x00\x00\x00WAVEVP8X\x0A\x00\x00\x00\x02", 21),
            AnimationType::none},
        {"PNG", QByteArray("\x89PNG\r\n\x1A\n", 8), AnimationType::none},
        {"nothing", QByteArray(), AnimationType::none},
    };
    for (const auto &row : rows)
        EXPECT_EQ(AnimationHeader::typeOf(row.head), row.expected) << row.name;
}

} // namespace
