#include "core/ResumeStore.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

const QDateTime savedAt(QDate(2026, 3, 14), QTime(15, 9, 26, 535), Qt::UTC);

QString expectedFileName(const QString &bundleId)
{
    return QString::fromLatin1(QCryptographicHash::hash(bundleId.toUtf8(), QCryptographicHash::Sha256).toHex())
        + QStringLiteral(".json");
}

bool writeRaw(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

class ResumeStoreTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QString folder = tmp.path() + QStringLiteral("/SorvanePlayer/resume");
    ResumeStore store {folder};

    void SetUp() override { ASSERT_TRUE(tmp.isValid()); }

    QString pathFor(const QString &id) const { return folder + u'/' + expectedFileName(id); }
};

TEST_F(ResumeStoreTest, RoundTripKeepsEveryFieldToTheSecond)
{
    const struct {
        const char *id;
        qint64 index;
        std::optional<QString> style;
    } table[] = {
        {"bundle-a", 0, std::nullopt},
        {"bundle-b", 7, QStringLiteral("memory-table")},
        {"été 日本", 41, QStringLiteral("style-from-a-newer-player")},
        // Beyond a double's 53-bit mantissa: the index must stay exact.
        {"bundle-c", (qint64(1) << 53) + 1, QStringLiteral("classic")},
    };
    for (const auto &row : table) {
        const QString id = QString::fromUtf8(row.id);
        ASSERT_TRUE(store.save({id, row.index, savedAt, row.style})) << row.id;
        const std::optional<ResumeRecord> loaded = store.load(id);
        ASSERT_TRUE(loaded) << row.id;
        EXPECT_EQ(loaded->bundleId, id);
        EXPECT_EQ(loaded->itemIndex, row.index) << row.id;
        EXPECT_EQ(loaded->style, row.style) << row.id;
        EXPECT_EQ(loaded->savedUtc, savedAt.addMSecs(-535)) << row.id;

        QFile file(pathFor(id));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
        EXPECT_EQ(json.value(u"saved_utc").toString(), QStringLiteral("2026-03-14T15:09:26Z"));
        EXPECT_EQ(json.contains(u"style"), row.style.has_value()) << row.id;
    }
}

TEST_F(ResumeStoreTest, HandWrittenFilesLoadOnlyWhenWellFormed)
{
    const struct {
        const char *content;
        bool loads;
    } table[] = {
        {R"({"bundle_id":"id","item_index":3,"saved_utc":"2026-01-01T00:00:00Z","style":"classic"})", true},
        {R"({"bundle_id":"id","item_index":3,"saved_utc":"2026-01-01T00:00:00.250Z","style":null})", true},
        // Edited to another bundle's id, or stripped of it.
        {R"({"bundle_id":"other","item_index":3,"saved_utc":"2026-01-01T00:00:00Z"})", false},
        {R"({"item_index":3,"saved_utc":"2026-01-01T00:00:00Z"})", false},
        // Not JSON, or not an object.
        {R"({"bundle_id":"id","item_index":3,)", false},
        {R"([{"bundle_id":"id","item_index":3,"saved_utc":"2026-01-01T00:00:00Z"}])", false},
        // Mistyped members.
        {R"({"bundle_id":"id","item_index":"3","saved_utc":"2026-01-01T00:00:00Z"})", false},
        {R"({"bundle_id":"id","item_index":3.5,"saved_utc":"2026-01-01T00:00:00Z"})", false},
        {R"({"bundle_id":"id","saved_utc":"2026-01-01T00:00:00Z"})", false},
        {R"({"bundle_id":"id","item_index":3,"saved_utc":"2026-01-01T00:00:00Z","style":1})", false},
        {R"({"bundle_id":"id","item_index":3,"saved_utc":"yesterday"})", false},
        {R"({"bundle_id":"id","item_index":3})", false},
    };
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const auto &row : table) {
        ASSERT_TRUE(writeRaw(pathFor(QStringLiteral("id")), row.content));
        const std::optional<ResumeRecord> loaded = store.load(QStringLiteral("id"));
        EXPECT_EQ(loaded.has_value(), row.loads) << row.content;
        if (loaded)
            EXPECT_EQ(loaded->itemIndex, 3);
    }
}

TEST_F(ResumeStoreTest, FilesLargerThanTheLimitAreRefused)
{
    const QByteArray record = R"({"bundle_id":"id","item_index":3,"saved_utc":"2026-01-01T00:00:00Z"})";
    ASSERT_TRUE(QDir().mkpath(folder));
    for (const qint64 size : {ResumeStore::maximumFileBytes, ResumeStore::maximumFileBytes + 1}) {
        // Trailing white space keeps the JSON valid, so only the size can refuse it.
        ASSERT_TRUE(writeRaw(pathFor(QStringLiteral("id")), record + QByteArray(size - record.size(), ' ')));
        EXPECT_EQ(store.load(QStringLiteral("id")).has_value(), size <= ResumeStore::maximumFileBytes) << size;
    }
}

TEST_F(ResumeStoreTest, NothingIsKeptWithoutAnIdOrATimeOrWhereAFileOrFolderIsInTheWay)
{
    for (const std::optional<QString> &id : {std::optional<QString>(), std::optional<QString>(QString())}) {
        EXPECT_FALSE(store.load(id));
        EXPECT_FALSE(store.save({id, 2, savedAt, std::nullopt}));
    }
    // A record with no valid time would be refused when read back.
    EXPECT_FALSE(store.save({QStringLiteral("a"), 2, QDateTime(), std::nullopt}));
    EXPECT_TRUE(QDir(tmp.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
    // A file where the folder should be; then a folder where the record should be.
    ASSERT_TRUE(writeRaw(tmp.path() + QStringLiteral("/SorvanePlayer"), "in the way"));
    EXPECT_FALSE(store.save({QStringLiteral("id"), 1, savedAt, std::nullopt}));
    ASSERT_TRUE(QFile::remove(tmp.path() + QStringLiteral("/SorvanePlayer")));
    ASSERT_TRUE(QDir().mkpath(pathFor(QStringLiteral("id"))));
    EXPECT_FALSE(store.load(QStringLiteral("id")));
    EXPECT_FALSE(store.save({QStringLiteral("id"), 1, savedAt, std::nullopt}));
}

} // namespace
