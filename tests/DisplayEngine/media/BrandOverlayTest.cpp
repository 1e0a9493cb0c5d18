#include "media/BrandOverlay.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace sorvane {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

const std::string unreadableLine
    = "sorvane.engine: [settingsUnreadable] brand_overlay.json could not be read; using defaults";
const std::string unwritableLine = "sorvane.engine: [settingsUnwritable] brand_overlay.json could not be written";
const std::string unsafePathLine
    = "sorvane.engine: Brand overlay image path is not a safe absolute path; overlay hidden";
const std::string missingFileLine = "sorvane.engine: Brand overlay image file is missing; overlay hidden";
const std::string undecodableLine
    = "sorvane.engine: [imageUndecodable] Brand overlay image could not be decoded; overlay hidden";

// Collects every Qt message as "category: text" so tests compare the exact lines.
class LogCapture {
public:
    LogCapture()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    std::vector<std::string> take() { return std::exchange(s_lines, {}); }

private:
    static void handle(QtMsgType, const QMessageLogContext &context, const QString &text)
    {
        s_lines.push_back(std::string(context.category ? context.category : "default") + ": " + text.toStdString());
    }

    static inline std::vector<std::string> s_lines;
    QtMessageHandler m_previous = nullptr;
};

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

// In range and away from every default, so a member that is reset or clamped
// by mistake shows.
BrandOverlaySettings custom()
{
    BrandOverlaySettings settings;
    settings.enabled = true;
    settings.imagePath = QStringLiteral("/logos/studio.png");
    settings.corner = OverlayCorner::topLeft;
    settings.sizePercent = 9.0;
    settings.opacity = 0.4;
    settings.marginPercent = 3.0;
    return settings;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void expectRect(const QRectF &rect, double x, double y, double width, double height)
{
    EXPECT_NEAR(rect.x(), x, 1e-9);
    EXPECT_NEAR(rect.y(), y, 1e-9);
    EXPECT_NEAR(rect.width(), width, 1e-9);
    EXPECT_NEAR(rect.height(), height, 1e-9);
}

TEST(OverlayCorner, RawValuesRoundTripAndOthersAreRefused)
{
    const std::pair<OverlayCorner, const char *> cases[] = {
        {OverlayCorner::topLeft, "TopLeft"},
        {OverlayCorner::topRight, "TopRight"},
        {OverlayCorner::bottomLeft, "BottomLeft"},
        {OverlayCorner::bottomRight, "BottomRight"},
    };
    for (const auto &[corner, raw] : cases) {
        EXPECT_EQ(toRaw(corner), QString::fromUtf8(raw));
        EXPECT_EQ(fromRaw<OverlayCorner>(QString::fromUtf8(raw)), corner) << raw;
    }
    for (const char *other : {"topLeft", "top_left", "TOPLEFT", " TopLeft", ""})
        EXPECT_EQ(fromRaw<OverlayCorner>(QString::fromUtf8(other)), std::nullopt) << other;
}

TEST(BrandOverlayNormalise, ClampsFiniteNumbersAndDefaultsTheRest)
{
    struct Row {
        const char *member;
        double BrandOverlaySettings::*field;
        double input;
        double expected;
    };
    const Row rows[] = {
        {"sizePercent", &BrandOverlaySettings::sizePercent, -5.0, 3.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, 2.9, 3.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, 3.0, 3.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, 7.5, 7.5},
        {"sizePercent", &BrandOverlaySettings::sizePercent, 15.0, 15.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, 40.0, 15.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, nan, 6.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, inf, 6.0},
        {"sizePercent", &BrandOverlaySettings::sizePercent, -inf, 6.0},
        {"opacity", &BrandOverlaySettings::opacity, -1.0, 0.0},
        {"opacity", &BrandOverlaySettings::opacity, 0.0, 0.0},
        {"opacity", &BrandOverlaySettings::opacity, 0.35, 0.35},
        {"opacity", &BrandOverlaySettings::opacity, 1.0, 1.0},
        {"opacity", &BrandOverlaySettings::opacity, 1.5, 1.0},
        {"opacity", &BrandOverlaySettings::opacity, nan, 0.6},
        {"opacity", &BrandOverlaySettings::opacity, inf, 0.6},
        {"opacity", &BrandOverlaySettings::opacity, -inf, 0.6},
        {"marginPercent", &BrandOverlaySettings::marginPercent, 0.5, 1.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, 1.0, 1.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, 4.2, 4.2},
        {"marginPercent", &BrandOverlaySettings::marginPercent, 5.0, 5.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, 5.5, 5.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, nan, 2.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, inf, 2.0},
        {"marginPercent", &BrandOverlaySettings::marginPercent, -inf, 2.0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.member) + " = " + std::to_string(row.input));
        BrandOverlaySettings input = custom();
        input.*row.field = row.input;
        BrandOverlaySettings expected = custom();
        expected.*row.field = row.expected;
        EXPECT_EQ(BrandOverlay::normalise(input), expected);
    }
    EXPECT_EQ(BrandOverlay::normalise(custom()), custom());
    EXPECT_EQ(BrandOverlay::normalise(BrandOverlaySettings {}), BrandOverlaySettings {});
}

TEST(BrandOverlayNormalise, TrimsTheImagePathAndDropsABlankOne)
{
    const std::pair<std::optional<QString>, std::optional<QString>> rows[] = {
        {QStringLiteral("  /x.png\n"), QStringLiteral("/x.png")},
        {QStringLiteral("\t\r\n/logos/a  b.png \r\n"), QStringLiteral("/logos/a  b.png")},
        {QStringLiteral("/x.png"), QStringLiteral("/x.png")},
        {QStringLiteral("   "), std::nullopt},
        {QStringLiteral("\n\t\r"), std::nullopt},
        {QString(), std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const auto &[input, expected] : rows) {
        BrandOverlaySettings settings = custom();
        settings.imagePath = input;
        const BrandOverlaySettings normalised = BrandOverlay::normalise(settings);
        EXPECT_EQ(normalised.imagePath, expected) << (input ? input->toStdString() : "(absent)");
        settings.imagePath = expected;
        EXPECT_EQ(normalised, settings);
    }
}

TEST(BrandOverlayGeometry, PlacesTheFittedLogoInEachCorner)
{
    // 1920 x 1080 display, 400 x 200 logo, by the rules written out.
    const double width = 1920, height = 1080, logoWidth = 400, logoHeight = 200;
    struct Percents {
        double size;
        double margin;
    };
    for (const Percents percents : {Percents {6.0, 2.0}, Percents {12.5, 4.0}, Percents {3.0, 1.0}}) {
        const double e = 1080;
        const double b = percents.size * e / 100;
        const double m = e * percents.margin / 100;
        const double k = std::min(b / logoWidth, b / logoHeight);
        const double w = logoWidth * k, h = logoHeight * k;
        ASSERT_DOUBLE_EQ(w, b); // the wide logo fills the box's width
        ASSERT_DOUBLE_EQ(h, b / 2);

        const struct {
            OverlayCorner corner;
            double x;
            double y;
        } rows[] = {
            {OverlayCorner::topLeft, m, m},
            {OverlayCorner::topRight, width - m - w, m},
            {OverlayCorner::bottomLeft, m, height - m - h},
            {OverlayCorner::bottomRight, width - m - w, height - m - h},
        };
        for (const auto &row : rows) {
            SCOPED_TRACE(toRaw(row.corner).toStdString() + " at " + std::to_string(percents.size) + "% / "
                + std::to_string(percents.margin) + "%");
            expectRect(BrandOverlay::geometry(
                           row.corner, width, height, logoWidth, logoHeight, percents.size, percents.margin),
                row.x, row.y, w, h);
        }
    }
}

TEST(BrandOverlayGeometry, MatchesWorkedFiguresAndUsesTheShorterEdge)
{
    // Defaults on 1920 x 1080: box 64.8, margin 21.6.
    expectRect(
        BrandOverlay::geometry(OverlayCorner::bottomRight, 1920, 1080, 400, 200, 6, 2), 1833.6, 1026.0, 64.8, 32.4);
    expectRect(
        BrandOverlay::geometry(OverlayCorner::bottomRight, 1920, 1080, 500, 500, 6, 2), 1833.6, 993.6, 64.8, 64.8);
    expectRect(
        BrandOverlay::geometry(OverlayCorner::bottomRight, 1920, 1080, 1000, 500, 6, 2), 1833.6, 1026.0, 64.8, 32.4);
    // A tall logo is bounded by its height.
    expectRect(BrandOverlay::geometry(OverlayCorner::topLeft, 1920, 1080, 200, 400, 6, 2), 21.6, 21.6, 32.4, 64.8);
    // A portrait display: the shorter edge is the width.
    expectRect(
        BrandOverlay::geometry(OverlayCorner::bottomRight, 1080, 1920, 400, 200, 6, 2), 993.6, 1866.0, 64.8, 32.4);
}

TEST(BrandOverlayGeometry, NormalisesRawPercentsFirst)
{
    const struct {
        double size;
        double margin;
        double clampedSize;
        double clampedMargin;
    } rows[] = {
        {40, 0.5, 15, 1},
        {1, 9, 3, 5},
        {nan, inf, 6, 2},
        {-inf, nan, 6, 2},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::to_string(row.size) + "% / " + std::to_string(row.margin) + "%");
        for (const OverlayCorner corner :
            {OverlayCorner::topLeft, OverlayCorner::topRight, OverlayCorner::bottomLeft, OverlayCorner::bottomRight}) {
            const QRectF expected
                = BrandOverlay::geometry(corner, 1920, 1080, 400, 200, row.clampedSize, row.clampedMargin);
            const QRectF actual = BrandOverlay::geometry(corner, 1920, 1080, 400, 200, row.size, row.margin);
            expectRect(actual, expected.x(), expected.y(), expected.width(), expected.height());
        }
    }
    // 15 % of 1080 is 162, 1 % is 10.8.
    expectRect(
        BrandOverlay::geometry(OverlayCorner::bottomRight, 1920, 1080, 400, 200, 40, 0.5), 1747.2, 988.2, 162, 81);
}

TEST(BrandOverlayGeometry, UnusableSizesGiveTheEmptyRectangle)
{
    const struct {
        double displayWidth, displayHeight, imageWidth, imageHeight;
    } rows[] = {
        {0, 1080, 400, 200},
        {1920, 0, 400, 200},
        {1920, 1080, 0, 200},
        {1920, 1080, 400, 0},
        {-1920, 1080, 400, 200},
        {1920, -1080, 400, 200},
        {1920, 1080, -400, 200},
        {1920, 1080, 400, -200},
        {inf, 1080, 400, 200},
        {1920, inf, 400, 200},
        {nan, 1080, 400, 200},
        {1920, nan, 400, 200},
        {1920, 1080, inf, 200},
        {1920, 1080, 400, nan},
        {0, 0, 0, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::to_string(row.displayWidth) + "x" + std::to_string(row.displayHeight) + " / "
            + std::to_string(row.imageWidth) + "x" + std::to_string(row.imageHeight));
        const QRectF rect = BrandOverlay::geometry(
            OverlayCorner::bottomRight, row.displayWidth, row.displayHeight, row.imageWidth, row.imageHeight, 6, 2);
        EXPECT_EQ(rect.x(), 0.0);
        EXPECT_EQ(rect.y(), 0.0);
        EXPECT_EQ(rect.width(), 0.0);
        EXPECT_EQ(rect.height(), 0.0);
    }
}

class BrandOverlayStoreTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }
    QString folder() const { return m_dir.filePath(QStringLiteral("support/Sorvane")); }
    QString settingsPath() const { return folder() + QStringLiteral("/brand_overlay.json"); }
    void writeSettings(const QByteArray &bytes) const
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        ASSERT_TRUE(writeFile(settingsPath(), bytes));
    }

    QTemporaryDir m_dir;
    LogCapture m_log;
};

TEST_F(BrandOverlayStoreTest, SavesSortedCapitalisedKeysAndLoadsThemBack)
{
    BrandOverlayStore store(folder());
    BrandOverlaySettings settings = custom();
    settings.sizePercent = 12.5;
    settings.opacity = 0.75;
    store.save(settings);
    EXPECT_EQ(store.filePath(), settingsPath());
    EXPECT_EQ(readFile(settingsPath()).toStdString(),
        "{\n"
        "    \"Corner\": \"TopLeft\",\n"
        "    \"Enabled\": true,\n"
        "    \"ImagePath\": \"/logos/studio.png\",\n"
        "    \"MarginPercent\": 3,\n"
        "    \"Opacity\": 0.75,\n"
        "    \"SizePercent\": 12.5\n"
        "}\n");
    EXPECT_EQ(BrandOverlayStore(folder()).load(), settings);

    settings.imagePath.reset();
    settings.corner = OverlayCorner::bottomLeft;
    store.save(settings);
    EXPECT_EQ(readFile(settingsPath()).toStdString(),
        "{\n"
        "    \"Corner\": \"BottomLeft\",\n"
        "    \"Enabled\": true,\n"
        "    \"MarginPercent\": 3,\n"
        "    \"Opacity\": 0.75,\n"
        "    \"SizePercent\": 12.5\n"
        "}\n");
    EXPECT_EQ(BrandOverlayStore(folder()).load(), settings);
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, SavingWritesTheNormalisedRecord)
{
    BrandOverlaySettings settings = custom();
    settings.sizePercent = 40;
    settings.opacity = nan;
    settings.imagePath = QStringLiteral("  /logos/studio.png\n");
    BrandOverlayStore(folder()).save(settings);
    const QByteArray text = readFile(settingsPath());
    EXPECT_TRUE(text.contains("\"SizePercent\": 15")) << text.toStdString();
    EXPECT_TRUE(text.contains("\"Opacity\": 0.6")) << text.toStdString();
    EXPECT_TRUE(text.contains("\"ImagePath\": \"/logos/studio.png\"")) << text.toStdString();
}

TEST_F(BrandOverlayStoreTest, ReadsEachMemberUnderEitherKeyAndNormalises)
{
    const BrandOverlaySettings defaults;
    const auto with = [](auto change) {
        BrandOverlaySettings settings;
        change(settings);
        return settings;
    };
    const std::pair<const char *, BrandOverlaySettings> rows[] = {
        {R"({})", defaults},
        {R"({"enabled": true, "imagePath": "/logos/studio.png", "corner": "TopLeft",
             "sizePercent": 9, "opacity": 0.4, "marginPercent": 3})",
            custom()},
        // The capitalised key wins when both are usable.
        {R"({"Enabled": false, "enabled": true})", defaults},
        {R"({"SizePercent": 8, "sizePercent": 12})", with([](auto &s) { s.sizePercent = 8; })},
        {R"({"Corner": "TopRight", "corner": "BottomLeft"})",
            with([](auto &s) { s.corner = OverlayCorner::topRight; })},
        // A capitalised key of the wrong type gives way to the lower-case one.
        {R"({"Enabled": "yes", "enabled": true})", with([](auto &s) { s.enabled = true; })},
        {R"({"ImagePath": 5, "imagePath": "/a.png"})", with([](auto &s) { s.imagePath = QStringLiteral("/a.png"); })},
        {R"({"Corner": 1, "corner": "TopRight"})", with([](auto &s) { s.corner = OverlayCorner::topRight; })},
        {R"({"SizePercent": "12", "sizePercent": 12})", with([](auto &s) { s.sizePercent = 12; })},
        {R"({"Opacity": null, "opacity": 0.9})", with([](auto &s) { s.opacity = 0.9; })},
        {R"({"MarginPercent": [4], "marginPercent": 4})", with([](auto &s) { s.marginPercent = 4; })},
        // Wrong under both keys: the default.
        {R"({"Enabled": 1, "enabled": "true", "Opacity": "0.9", "opacity": false})", defaults},
        // Unknown corner texts, including the bundle's own wire value.
        {R"({"Corner": "Middle"})", defaults},
        {R"({"Corner": "top_left"})", defaults},
        {R"({"corner": "topLeft"})", defaults},
        // Loading normalises.
        {R"({"sizePercent": 40})", with([](auto &s) { s.sizePercent = 15; })},
        {R"({"Opacity": -1})", with([](auto &s) { s.opacity = 0; })},
        {R"({"MarginPercent": 0.5})", with([](auto &s) { s.marginPercent = 1; })},
        {R"({"ImagePath": "   "})", defaults},
        {R"({"ImagePath": "  /x.png\n"})", with([](auto &s) { s.imagePath = QStringLiteral("/x.png"); })},
    };
    for (const auto &[json, expected] : rows) {
        SCOPED_TRACE(json);
        writeSettings(QByteArray(json));
        EXPECT_EQ(BrandOverlayStore(folder()).load(), expected);
    }
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, AFileThatCannotBeReadGivesTheDefaultsAndOneLine)
{
    for (const char *text : {"", "not json", "{\"Enabled\": tru", "[1, 2]", "\"TopLeft\"", "null"}) {
        SCOPED_TRACE(text);
        writeSettings(QByteArray(text));
        EXPECT_EQ(BrandOverlayStore(folder()).load(), BrandOverlaySettings {});
        EXPECT_EQ(m_log.take(), std::vector<std::string> {unreadableLine});
    }
}

TEST_F(BrandOverlayStoreTest, AFolderInPlaceOfTheFileCannotBeRead)
{
    ASSERT_TRUE(QDir().mkpath(settingsPath()));
    EXPECT_EQ(BrandOverlayStore(folder()).load(), BrandOverlaySettings {});
    EXPECT_EQ(m_log.take(), std::vector<std::string> {unreadableLine});
}

TEST_F(BrandOverlayStoreTest, AMissingFileGivesTheDefaultsSilently)
{
    EXPECT_EQ(BrandOverlayStore(folder()).load(), BrandOverlaySettings {});
    ASSERT_TRUE(QDir().mkpath(folder()));
    EXPECT_EQ(BrandOverlayStore(folder()).load(), BrandOverlaySettings {});
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, TheInMemoryValueWinsNormalisedWithoutReadingTheFile)
{
    BrandOverlayStore store(folder());
    store.save(custom());

    BrandOverlaySettings held = custom();
    held.corner = OverlayCorner::bottomLeft;
    held.sizePercent = 40;
    BrandOverlaySettings expected = held;
    expected.sizePercent = 15;
    store.setInMemory(held);
    EXPECT_EQ(store.load(), expected);

    // Not even a corrupt file is looked at while a value is held.
    writeSettings("not json");
    EXPECT_EQ(store.load(), expected);
    EXPECT_TRUE(m_log.take().empty());

    store.clearInMemory();
    EXPECT_EQ(store.load(), BrandOverlaySettings {});
    EXPECT_EQ(m_log.take(), std::vector<std::string> {unreadableLine});
}

TEST_F(BrandOverlayStoreTest, SavingCreatesEveryMissingFolderAndReplacesTheFile)
{
    const QString deep = m_dir.filePath(QStringLiteral("a/b/c"));
    BrandOverlayStore store(deep);
    store.save(custom());
    BrandOverlaySettings changed = custom();
    changed.enabled = false;
    store.save(changed);
    EXPECT_EQ(BrandOverlayStore(deep).load(), changed);
    EXPECT_EQ(QDir(deep).entryList(QDir::Files | QDir::Hidden), QStringList {QStringLiteral("brand_overlay.json")});
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayStoreTest, ASaveThatCannotWriteIsLogged)
{
    const QString blocker = m_dir.filePath(QStringLiteral("blocker"));
    ASSERT_TRUE(writeFile(blocker, "a file, not a folder"));
    for (const QString &storage : {blocker, blocker + QStringLiteral("/Sorvane")}) {
        SCOPED_TRACE(storage.toStdString());
        BrandOverlayStore(storage).save(custom());
        EXPECT_EQ(m_log.take(), std::vector<std::string> {unwritableLine});
    }
    EXPECT_EQ(readFile(blocker), QByteArray("a file, not a folder"));

    // A folder where the file should go.
    ASSERT_TRUE(QDir().mkpath(settingsPath()));
    BrandOverlayStore(folder()).save(custom());
    EXPECT_EQ(m_log.take(), std::vector<std::string> {unwritableLine});
}

class BrandOverlayLogoTest : public BrandOverlayStoreTest {
protected:
    void SetUp() override
    {
        BrandOverlayStoreTest::SetUp();
        ASSERT_TRUE(writeFile(logoPath(), "pretend image"));
        ASSERT_TRUE(writeFile(m_dir.filePath(QStringLiteral("b..c.png")), "pretend image"));
    }
    QString logoPath() const { return m_dir.filePath(QStringLiteral("logo.png")); }
    static BrandOverlaySettings showing(const QString &path)
    {
        BrandOverlaySettings settings;
        settings.enabled = true;
        settings.imagePath = path;
        return settings;
    }
};

TEST_F(BrandOverlayLogoTest, EachFailedCheckHidesTheLogoWithItsLine)
{
    const QString tmp = m_dir.path();
    const struct {
        QString path;
        std::optional<QSize> decoded;
        std::string line;
        bool decodes;
    } rows[] = {
        {QStringLiteral("logos/x.png"), QSize(10, 10), unsafePathLine, false},
        {QStringLiteral("~/logo.png"), QSize(10, 10), unsafePathLine, false},
        {QStringLiteral("/Users/a/../b.png"), QSize(10, 10), unsafePathLine, false},
        // Present on disk, still refused: ".." anywhere is enough.
        {tmp + QStringLiteral("/b..c.png"), QSize(10, 10), unsafePathLine, false},
        {tmp + QStringLiteral("/sub/../logo.png"), QSize(10, 10), unsafePathLine, false},
        {tmp + QStringLiteral("/absent.png"), QSize(10, 10), missingFileLine, false},
        {logoPath(), std::nullopt, undecodableLine, true},
        {logoPath(), QSize(), undecodableLine, true},
        {logoPath(), QSize(0, 10), undecodableLine, true},
        {logoPath(), QSize(10, 0), undecodableLine, true},
        {logoPath(), QSize(-4, 10), undecodableLine, true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        const FakeDecoder decoder(row.decoded);
        EXPECT_EQ(BrandOverlay::logoImage(showing(row.path), decoder), std::nullopt);
        EXPECT_EQ(m_log.take(), std::vector<std::string> {row.line});
        EXPECT_EQ(decoder.calls.size(), row.decodes ? 1u : 0u);
    }
}

TEST_F(BrandOverlayLogoTest, AUsableLogoIsReturnedWithItsSize)
{
    for (const QString &path : {logoPath(), QStringLiteral("  ") + logoPath() + QStringLiteral("\n")}) {
        const FakeDecoder decoder(QSize(400, 200));
        EXPECT_EQ(BrandOverlay::logoImage(showing(path), decoder), (BrandOverlayLogo {logoPath(), QSize(400, 200)}));
        EXPECT_EQ(decoder.calls, std::vector<QString> {logoPath()});
    }
    EXPECT_TRUE(m_log.take().empty());
}

TEST_F(BrandOverlayLogoTest, AnOverlayWithNothingToShowIsNotChecked)
{
    BrandOverlaySettings disabled = showing(logoPath());
    disabled.enabled = false;
    BrandOverlaySettings unsafeButDisabled = showing(QStringLiteral("logos/x.png"));
    unsafeButDisabled.enabled = false;
    for (const BrandOverlaySettings &settings :
        {disabled, unsafeButDisabled, showing(QStringLiteral("   ")), BrandOverlaySettings {}}) {
        const FakeDecoder decoder(QSize(400, 200));
        EXPECT_EQ(BrandOverlay::logoImage(settings, decoder), std::nullopt);
        EXPECT_TRUE(decoder.calls.empty());
    }
    BrandOverlaySettings noPath = showing(logoPath());
    noPath.imagePath.reset();
    EXPECT_EQ(BrandOverlay::logoImage(noPath, FakeDecoder(QSize(1, 1))), std::nullopt);
    EXPECT_TRUE(m_log.take().empty());
}

} // namespace
} // namespace sorvane
