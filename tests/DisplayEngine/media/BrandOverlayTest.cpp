#include "media/BrandOverlay.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace sorvane {
namespace {

using test::readAll;
using test::writeAll;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

std::vector<std::string> warning(const char *text)
{
    return {test::logLine("sorvane.engine", "warning", QString::fromUtf8(text))};
}
const auto unreadable = warning("[settingsUnreadable] brand_overlay.json could not be read; using defaults");
const auto unwritable = warning("[settingsUnwritable] brand_overlay.json could not be written");

// Answers every decode with a fixed size (or nothing) and remembers what it was asked.
class FakeDecoder : public BrandOverlayImageDecoding {
public:
    explicit FakeDecoder(std::optional<QSize> answer) : m_answer(answer) { }
    std::optional<QSize> decode(const QString &path) const override
    {
        calls.push_back(path);
        return m_answer;
    }
    mutable std::vector<QString> calls;

private:
    std::optional<QSize> m_answer;
};

using S = BrandOverlaySettings;

// In range and away from every default, so a member that is reset or clamped by mistake shows.
const S custom {true, QStringLiteral("/logos/studio.png"), OverlayCorner::topLeft, 9.0, 0.4, 3.0};

TEST(BrandOverlay, GeometryFitsTheLogoInItsCornerByTheShorterEdge)
{
    const struct {
        OverlayCorner corner;
        double width, height, logoWidth, logoHeight, size, margin;
        QRectF expected;
    } rows[] = {
        // Defaults on 1920 x 1080: box 64.8, margin 21.6; wide logos fill the width, tall ones the height.
        {OverlayCorner::bottomRight, 1920, 1080, 400, 200, 6, 2, {1833.6, 1026.0, 64.8, 32.4}},
        {OverlayCorner::topLeft, 1920, 1080, 200, 400, 6, 2, {21.6, 21.6, 32.4, 64.8}},
        {OverlayCorner::topRight, 1920, 1080, 400, 200, 6, 2, {1833.6, 21.6, 64.8, 32.4}},
        {OverlayCorner::bottomLeft, 1920, 1080, 400, 200, 12.5, 4, {43.2, 969.3, 135, 67.5}},
        // A portrait display: the shorter edge is the width.
        {OverlayCorner::bottomRight, 1080, 1920, 400, 200, 6, 2, {993.6, 1866.0, 64.8, 32.4}},
        // Raw percents are normalised first: 15 % of 1080 is 162, 1 % is 10.8; unusable ones are defaults.
        {OverlayCorner::bottomRight, 1920, 1080, 400, 200, 40, 0.5, {1747.2, 988.2, 162, 81}},
        {OverlayCorner::bottomRight, 1920, 1080, 400, 200, nan, inf, {1833.6, 1026.0, 64.8, 32.4}},
    };
    const auto expectRect = [](const QRectF &rect, const QRectF &expected) {
        EXPECT_NEAR(rect.x(), expected.x(), 1e-9);
        EXPECT_NEAR(rect.y(), expected.y(), 1e-9);
        EXPECT_NEAR(rect.width(), expected.width(), 1e-9);
        EXPECT_NEAR(rect.height(), expected.height(), 1e-9);
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(std::to_string(r.width) + "x" + std::to_string(r.height) + " logo " + std::to_string(r.logoWidth)
            + "x" + std::to_string(r.logoHeight));
        expectRect(BrandOverlay::geometry(r.corner, r.width, r.height, r.logoWidth, r.logoHeight, r.size, r.margin),
            r.expected);
    }
    // Any size that is not positive and finite gives the empty rectangle.
    for (size_t which = 0; which < 4; ++which) {
        for (const double bad : {0.0, -1080.0, inf, nan}) {
            std::array<double, 4> sizes {1920, 1080, 400, 200};
            sizes[which] = bad;
            SCOPED_TRACE(std::to_string(which) + ": " + std::to_string(bad));
            expectRect(BrandOverlay::geometry(OverlayCorner::bottomRight, sizes[0], sizes[1], sizes[2], sizes[3], 6, 2),
                QRectF());
        }
    }
}

class BrandOverlayStoreTest : public ::testing::Test {
protected:
    QString folder() const { return m_dir.filePath(QStringLiteral("support/Sorvane")); }
    QString settingsPath() const { return folder() + QStringLiteral("/brand_overlay.json"); }
    void writeSettings(const QByteArray &bytes) const
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        ASSERT_TRUE(writeAll(settingsPath(), bytes));
    }
    static S showing(const QString &path) { return {.enabled = true, .imagePath = path}; }

    QTemporaryDir m_dir;
    test::LogCapture m_log;
};

TEST_F(BrandOverlayStoreTest, SavesTheNormalisedRecordWithSortedCapitalisedKeysAndLoadsItBack)
{
    BrandOverlayStore store(folder());
    S settings = custom;
    settings.sizePercent = 40;
    settings.opacity = 0.75;
    settings.imagePath = QStringLiteral("  /logos/studio.png\n");
    store.save(settings);
    EXPECT_EQ(store.filePath(), settingsPath());
    EXPECT_EQ(readAll(settingsPath()).toStdString(),
        "{\n    \"Corner\": \"TopLeft\",\n    \"Enabled\": true,\n    \"ImagePath\": \"/logos/studio.png\",\n"
        "    \"MarginPercent\": 3,\n    \"Opacity\": 0.75,\n    \"SizePercent\": 15\n}\n");
    EXPECT_EQ(BrandOverlayStore(folder()).load(), BrandOverlay::normalise(settings));

    // Without a path the key is left out; missing folders are made.
    const QString deep = m_dir.filePath(QStringLiteral("a/b/c"));
    BrandOverlayStore(deep).save({.enabled = true});
    EXPECT_FALSE(readAll(deep + "/brand_overlay.json").contains("ImagePath"));
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, ReadsEachMemberUnderEitherKeyAndNormalises)
{
    const S defaults;
    const std::pair<const char *, S> rows[] = {
        {R"({})", defaults},
        {R"({"enabled": true, "imagePath": "/logos/studio.png", "corner": "TopLeft",
             "sizePercent": 9, "opacity": 0.4, "marginPercent": 3})",
            custom},
        // The capitalised key wins when both are usable, and gives way when it has the wrong type.
        {R"({"Enabled": false, "enabled": true})", defaults},
        {R"({"Corner": "TopRight", "corner": "BottomLeft"})", {.corner = OverlayCorner::topRight}},
        {R"({"ImagePath": 5, "imagePath": "/a.png"})", {.imagePath = QStringLiteral("/a.png")}},
        {R"({"Opacity": null, "opacity": 0.9})", {.opacity = 0.9}},
        {R"({"Enabled": 1, "enabled": "true", "Opacity": "0.9", "opacity": false})", defaults},
        // Unknown corner texts, including the bundle's own wire value.
        {R"({"Corner": "top_left"})", defaults},
        {R"({"corner": "topLeft"})", defaults},
        // Numbers are clamped into range, paths trimmed, and blank paths dropped.
        {R"({"sizePercent": 40, "Opacity": -1, "MarginPercent": 0.5, "ImagePath": "\t\r\n/logos/a  b.png \r\n"})",
            {.imagePath = QStringLiteral("/logos/a  b.png"), .sizePercent = 15, .opacity = 0, .marginPercent = 1}},
        {R"({"SizePercent": 2.9, "Opacity": 1.5, "MarginPercent": 5.5, "ImagePath": "\n\t "})",
            {.sizePercent = 3, .opacity = 1, .marginPercent = 5}},
    };
    for (const auto &[json, expected] : rows) {
        SCOPED_TRACE(json);
        writeSettings(QByteArray(json));
        EXPECT_EQ(BrandOverlayStore(folder()).load(), expected);
    }
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, FilesThatCannotBeReadOrWrittenGiveTheDefaultsAndOneLine)
{
    EXPECT_EQ(BrandOverlayStore(folder()).load(), S {});
    EXPECT_TRUE(m_log.take().empty()); // a missing file is no fault
    for (const char *text : {"", "not json", "{\"Enabled\": tru", "[1, 2]", "\"TopLeft\"", "null"}) {
        writeSettings(QByteArray(text));
        EXPECT_EQ(BrandOverlayStore(folder()).load(), S {}) << text;
        EXPECT_EQ(m_log.take(), unreadable) << text;
    }

    // A value held in memory wins, normalised, without the file being read.
    BrandOverlayStore store(folder());
    store.setInMemory({.sizePercent = 40, .opacity = 0.3});
    EXPECT_EQ(store.load(), (S {.sizePercent = 15, .opacity = 0.3}));
    EXPECT_TRUE(m_log.take().empty());
    store.clearInMemory();
    EXPECT_EQ(store.load(), S {});
    EXPECT_EQ(m_log.take(), unreadable);

    const QString blocker = m_dir.filePath(QStringLiteral("blocker"));
    ASSERT_TRUE(writeAll(blocker, "a file, not a folder"));
    QFile::remove(settingsPath());
    ASSERT_TRUE(QDir().mkpath(settingsPath()));
    for (const QString &storage : {blocker, blocker + QStringLiteral("/Sorvane"), folder()}) {
        BrandOverlayStore(storage).save(custom);
        EXPECT_EQ(m_log.take(), unwritable) << storage.toStdString();
    }
    EXPECT_EQ(readAll(blocker), QByteArray("a file, not a folder"));
    // A folder in place of the file cannot be read either.
    EXPECT_EQ(BrandOverlayStore(folder()).load(), S {});
    EXPECT_EQ(m_log.take(), unreadable);
}

TEST_F(BrandOverlayStoreTest, TheLogoIsShownOnlyWhenEveryCheckPasses)
{
    const QString tmp = m_dir.path(), logo = m_dir.filePath(QStringLiteral("logo.png"));
    ASSERT_TRUE(writeAll(logo, "pretend image"));
    ASSERT_TRUE(writeAll(tmp + "/b..c.png", "pretend image"));
    const auto unsafe = warning("Brand overlay image path is not a safe absolute path; overlay hidden");
    const auto undecodable = warning("[imageUndecodable] Brand overlay image could not be decoded; overlay hidden");
    const struct {
        QString path;
        std::optional<QSize> decoded;
        std::vector<std::string> lines;
    } rows[] = {
        {QStringLiteral("logos/x.png"), QSize(10, 10), unsafe},
        {QStringLiteral("~/logo.png"), QSize(10, 10), unsafe},
        // Present on disk, still refused: ".." anywhere is enough.
        {tmp + QStringLiteral("/b..c.png"), QSize(10, 10), unsafe},
        {tmp + QStringLiteral("/sub/../logo.png"), QSize(10, 10), unsafe},
        {tmp + QStringLiteral("/absent.png"), QSize(10, 10),
            warning("Brand overlay image file is missing; overlay hidden")},
        {logo, std::nullopt, undecodable},
        {logo, QSize(0, 10), undecodable},
    };
    for (const auto &row : rows) {
        const FakeDecoder decoder(row.decoded);
        EXPECT_EQ(BrandOverlay::logoImage(showing(row.path), decoder), std::nullopt) << row.path.toStdString();
        EXPECT_EQ(m_log.take(), row.lines) << row.path.toStdString();
        // Only a safe path to a file that exists is handed to the decoder.
        EXPECT_EQ(decoder.calls.size(), row.lines == undecodable ? 1u : 0u) << row.path.toStdString();
    }

    for (const QString &path : {logo, QStringLiteral("  ") + logo + QStringLiteral("\n")}) {
        const FakeDecoder decoder(QSize(400, 200));
        EXPECT_EQ(BrandOverlay::logoImage(showing(path), decoder), (BrandOverlayLogo {logo, QSize(400, 200)}));
        EXPECT_EQ(decoder.calls, std::vector<QString> {logo});
    }
    EXPECT_TRUE(m_log.take().empty());
}

} // namespace
} // namespace sorvane
