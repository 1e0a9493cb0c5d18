#include "slideshow/PreferenceStore.h"

#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

namespace sorvane {
namespace {

// Same alternative and same value; a NaN equals a NaN, and 0.0 differs from -0.0.
bool identical(const PreferenceValue &a, const PreferenceValue &b)
{
    if (a.index() != b.index())
        return false;
    if (const double *x = std::get_if<double>(&a)) {
        const double y = std::get<double>(b);
        return (std::isnan(*x) && std::isnan(y)) || (*x == y && std::signbit(*x) == std::signbit(y));
    }
    return a == b;
}

struct Stored {
    const char *key;
    PreferenceValue value;
};

std::vector<Stored> everyKindOfValue()
{
    const double inf = std::numeric_limits<double>::infinity();
    return {
        {"largest", std::numeric_limits<qint64>::max()},
        {"smallest", std::numeric_limits<qint64>::min()},
        {"four point zero", 4.0},
        {"negative zero", -0.0},
        {"tiny", 5e-324},
        {"nan", std::numeric_limits<double>::quiet_NaN()},
        {"infinity", inf},
        {"negative infinity", -inf},
        {"empty text", QString()},
        {"text that looks like a number", QStringLiteral("4")},
        {"object", QJsonObject {{"intervalSeconds", 5}, {"loop", true}}},
        {"array", QJsonArray {QJsonObject {{"id", "a"}}, 2, "three"}},
    };
}

class PreferenceStoreTest : public testing::Test {
protected:
    QString folder() const { return m_dir.filePath(QStringLiteral("config/sorvane")); }
    QString file() const { return QDir(folder()).filePath(QStringLiteral("preferences.json")); }
    void writeFile(const QByteArray &bytes)
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        ASSERT_TRUE(test::writeAll(file(), bytes));
    }

    QTemporaryDir m_dir;
};

TEST_F(PreferenceStoreTest, EveryValueIsStoredWithItsTypeAndComesBackFromTheFile)
{
    {
        PreferenceStore store(folder());
        EXPECT_FALSE(QFileInfo::exists(folder())) << "nothing is written before the first change";
        for (const Stored &entry : everyKindOfValue())
            ASSERT_EQ(store.setValue(QString::fromUtf8(entry.key), entry.value), std::nullopt) << entry.key;
        ASSERT_EQ(store.setValues({{"i", qint64(4)}, {"d", 4.0}, {"b", false}}), std::nullopt);
    }
    const QJsonObject onDisk = QJsonDocument::fromJson(test::readAll(file())).object();
    EXPECT_EQ(onDisk.value("i").toObject(), (QJsonObject {{"type", "integer"}, {"value", 4}}));
    EXPECT_EQ(onDisk.value("d").toObject(), (QJsonObject {{"type", "double"}, {"value", 4}}));
    EXPECT_EQ(onDisk.value("b").toObject(), (QJsonObject {{"type", "bool"}, {"value", false}}));

    PreferenceStore reopened(folder());
    EXPECT_EQ(reopened.filePath(), file());
    for (const Stored &entry : everyKindOfValue()) {
        const std::optional<PreferenceValue> read = reopened.value(QString::fromUtf8(entry.key));
        ASSERT_TRUE(read.has_value()) << entry.key;
        EXPECT_TRUE(identical(*read, entry.value))
            << entry.key << ": wrote type " << entry.value.index() << ", read type " << read->index();
    }
    // Typed reads answer only for their own type; a removed key leaves the file.
    EXPECT_EQ(reopened.objectValue(QStringLiteral("object")), (QJsonObject {{"intervalSeconds", 5}, {"loop", true}}));
    EXPECT_EQ(reopened.arrayValue(QStringLiteral("object")), std::nullopt);
    EXPECT_EQ(reopened.integerValue(QStringLiteral("d")), std::nullopt);
    ASSERT_EQ(reopened.remove(QStringLiteral("object")), std::nullopt);
    EXPECT_FALSE(PreferenceStore(folder()).contains(QStringLiteral("object")));
    EXPECT_TRUE(PreferenceStore(folder()).contains(QStringLiteral("array")));
}

TEST_F(PreferenceStoreTest, ABrokenFileReadsAsEmptyAndIsKeptAsideByTheNextWrite)
{
    const QByteArray broken[] = {
        "{\"collage.flowScrollSpeed\": {\"type\": \"double\", \"value\": 3",
        "[{\"type\": \"bool\", \"value\": true}]",
        "",
        QByteArray("\xff\xfe\x00garbage", 10),
    };
    for (const QByteArray &bytes : broken) {
        writeFile(bytes);
        PreferenceStore store(folder());
        EXPECT_FALSE(store.contains(QStringLiteral("collage.flowScrollSpeed"))) << bytes.toStdString();
        EXPECT_EQ(test::readAll(file()), bytes) << "read alone must leave the file as it was";
        EXPECT_EQ(store.remove(QStringLiteral("anything")), std::nullopt);
        EXPECT_EQ(test::readAll(file()), bytes) << "removing nothing must leave the file as it was";

        ASSERT_EQ(store.setValue(QStringLiteral("k"), qint64(1)), std::nullopt);
        const PreferenceStore reopened(folder());
        EXPECT_EQ(reopened.integerValue(QStringLiteral("k")), 1) << bytes.toStdString();
        const QStringList kept = QDir(folder()).entryList({QStringLiteral("preferences.json.unreadable-*")});
        if (bytes.isEmpty()) {
            EXPECT_TRUE(kept.isEmpty()) << "an empty file holds nothing to keep";
        } else {
            ASSERT_EQ(kept.size(), 1) << bytes.toStdString();
            EXPECT_EQ(test::readAll(QDir(folder()).filePath(kept.first())), bytes);
        }
        for (const QString &name : kept)
            QFile::remove(QDir(folder()).filePath(name));
    }
}

// The preferences fuzzer checks that a write keeps such entries; here, that they read as missing.
TEST_F(PreferenceStoreTest, EntriesItCannotReadAreMissing)
{
    writeFile(R"({"fraction as integer": {"type": "integer", "value": 4.5}, "no type": {"value": true},
        "number as bool": {"type": "bool", "value": 1}, "text as double": {"type": "double", "value": "four"},
        "newer type": {"type": "colour", "value": "#ff0000"}, "bare value": 5, "good": {"type": "integer", "value": 7}})");
    PreferenceStore store(folder());
    for (const char *key :
        {"fraction as integer", "number as bool", "text as double", "no type", "newer type", "bare value"})
        EXPECT_EQ(store.value(QString::fromUtf8(key)), std::nullopt) << key;
    EXPECT_EQ(store.integerValue(QStringLiteral("good")), 7);
}

TEST_F(PreferenceStoreTest, AFailedWriteChangesNothing)
{
    PreferenceStore store(folder());
    ASSERT_EQ(store.setValue(QStringLiteral("k"), qint64(1)), std::nullopt);

    // The file's place is taken by a folder, so the replacement cannot be renamed into it.
    ASSERT_TRUE(QFile::remove(file()));
    ASSERT_TRUE(QDir().mkpath(file()));
    const std::optional<QString> error = store.setValues({{"k", qint64(2)}, {"other", true}});
    ASSERT_TRUE(error.has_value());
    EXPECT_FALSE(error->isEmpty());
    EXPECT_EQ(store.integerValue(QStringLiteral("k")), 1);
    EXPECT_FALSE(store.contains(QStringLiteral("other")));

    // A folder where the preferences folder should be: nothing can be created.
    const QString blocked = m_dir.filePath(QStringLiteral("blocked"));
    ASSERT_TRUE(test::writeAll(blocked, "not a folder"));
    PreferenceStore nowhere(QDir(blocked).filePath(QStringLiteral("sub")));
    EXPECT_TRUE(nowhere.setValue(QStringLiteral("k"), true).has_value());
    EXPECT_FALSE(nowhere.contains(QStringLiteral("k")));
}

} // namespace
} // namespace sorvane
