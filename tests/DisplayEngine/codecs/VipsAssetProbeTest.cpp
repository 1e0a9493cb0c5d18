#include "codecs/VipsAssetProbe.h"
#include "codecs/VipsRuntime.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"

#include "VipsImageRef.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>

#include <vips/vips.h>

#include <array>
#include <latch>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace sorvane {
namespace {

using test::ImageRef;
using test::LogCapture;
using test::peakResidentBytes;
using test::readAll;
using test::writeAll;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;

// The probe's lines are info messages, which the environment's logging rules may hide.
const QString engineInfoOn = QStringLiteral("sorvane.engine.info=true");

// A line the probe logs about a file.
std::string engineInfo(const QString &text)
{
    return test::logLine("sorvane.engine", "info", text);
}

// One comparable text per probe answer, so tables and threads can be checked with plain equality.
std::string describe(const std::optional<BundleProbeResult> &result)
{
    if (!result)
        return "refused";
    return std::to_string(result->width) + "x" + std::to_string(result->height) + ", " + std::to_string(result->bytes)
        + " bytes";
}

enum class Format { jpeg, png, webp, tiff, gif };

// Busy pixels, so that JPEG files carry a substantial entropy-coded segment.
QByteArray noisyPixels(int width, int height, int bands)
{
    QByteArray pixels(qsizetype(width) * height * bands, Qt::Uninitialized);
    quint32 state = 0x2545F491u;
    for (qsizetype i = 0; i < pixels.size(); ++i) {
        state = state * 1664525u + 1013904223u;
        const int x = int((i / bands) % width);
        const int y = int((i / bands) / width);
        pixels[i] = char(((x * 5 + y * 3) + int(state >> 28)) & 0xff);
    }
    return pixels;
}

bool saveImage(const QString &path, Format format, int width, int height, int bands)
{
    const QByteArray pixels = noisyPixels(width, height, bands);
    const ImageRef image(vips_image_new_from_memory_copy(
        pixels.constData(), size_t(pixels.size()), width, height, bands, VIPS_FORMAT_UCHAR));
    if (!image.image)
        return false;
    const QByteArray file = QFile::encodeName(path);
    switch (format) {
    case Format::jpeg:
        return vips_jpegsave(image.image, file.constData(), "Q", 90, nullptr) == 0;
    case Format::png:
        return vips_pngsave(image.image, file.constData(), nullptr) == 0;
    case Format::webp:
        return vips_webpsave(image.image, file.constData(), nullptr) == 0;
    case Format::tiff:
        return vips_tiffsave(image.image, file.constData(), nullptr) == 0;
    case Format::gif:
        return vips_gifsave(image.image, file.constData(), nullptr) == 0;
    }
    return false;
}

// Offset of the first byte of entropy-coded data (just after the SOS segment), or -1.
qsizetype entropyDataStart(const QByteArray &jpeg)
{
    qsizetype pos = 2; // after SOI
    while (pos + 4 <= jpeg.size()) {
        if (quint8(jpeg[pos]) != 0xFF)
            return -1;
        const quint8 marker = quint8(jpeg[pos + 1]);
        const qsizetype length = qFromBigEndian<quint16>(jpeg.constData() + pos + 2);
        if (marker == 0xDA)
            return pos + 2 + length;
        pos += 2 + length;
    }
    return -1;
}

struct DecodableCase {
    const char *name;
    Format format;
    int width;
    int height;
    int bands;
};

const DecodableCase decodableCases[] = {
    {"photo.jpg", Format::jpeg, 320, 200, 3},
    {"transparent.png", Format::png, 150, 100, 4},
    {"picture.webp", Format::webp, 90, 60, 3},
    {"scan.tiff", Format::tiff, 64, 48, 3},
    {"loop.gif", Format::gif, 40, 30, 3},
    // Brackets are ordinary in photo names; libvips reads a bracketed suffix of a name as load options.
    {"Été à Nice [2].jpg", Format::jpeg, 33, 21, 3},
};

struct RefusedCase {
    const char *name;
    const char *logTail;
};

const RefusedCase refusedCases[] = {
    {"notes.jpg", "is not an image at all"},
    // The path in the log line must survive as UTF-8.
    {"Notizen für Jörg.jpg", "is not an image at all"},
    {"empty.jpg", "is not an image at all"},
    {"missing.jpg", "is not an image at all"},
    {"cut-in-header.jpg", "is incomplete"},
    {"truncated.jpg", "is incomplete"},
    {"huge.png", "would not decode"},
};

class VipsAssetProbeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        ASSERT_TRUE(VipsRuntime::ensureStarted());
        for (const DecodableCase &c : decodableCases)
            ASSERT_TRUE(saveImage(path(c.name), c.format, c.width, c.height, c.bands))
                << c.name << ": " << VipsRuntime::takeError();

        const QByteArray jpeg = readAll(path("photo.jpg"));
        ASSERT_GT(jpeg.size(), 1000);
        ASSERT_TRUE(writeAll(path("notes.jpg"), "Shopping list: eggs, flour, a new memory card.\n"));
        ASSERT_TRUE(writeAll(path("Notizen für Jörg.jpg"), "Geburtstag: Kuchen bestellen.\n"));
        ASSERT_TRUE(writeAll(path("empty.jpg"), {}));
        ASSERT_TRUE(writeAll(path("cut-in-header.jpg"), jpeg.left(entropyDataStart(jpeg) / 2)));
        ASSERT_TRUE(writeAll(path("truncated.jpg"), jpeg.left(jpeg.size() / 2)));
        const QByteArray huge = test::pngClaiming(50000, 50000);
        ASSERT_LT(huge.size(), 4096);
        ASSERT_TRUE(writeAll(path("huge.png"), huge));
    }

    QString path(const char *name) const { return m_dir.filePath(QString::fromUtf8(name)); }

    std::vector<QString> allPaths() const
    {
        std::vector<QString> paths;
        for (const DecodableCase &c : decodableCases)
            paths.push_back(path(c.name));
        for (const RefusedCase &c : refusedCases)
            paths.push_back(path(c.name));
        return paths;
    }

    QTemporaryDir m_dir;
    VipsAssetProbe m_probe;
};

TEST_F(VipsAssetProbeTest, EachFileGetsItsAnswerAndRefusalsTheirOwnLogLine)
{
    ASSERT_FALSE(QFileInfo::exists(path("missing.jpg")));
    LogCapture log(engineInfoOn);
    for (const DecodableCase &c : decodableCases) {
        const QString file = path(c.name);
        EXPECT_EQ(describe(m_probe.probe(file)),
            std::to_string(c.width) + "x" + std::to_string(c.height) + ", " + std::to_string(QFileInfo(file).size())
                + " bytes")
            << c.name;
    }
    EXPECT_THAT(log.take(), IsEmpty());

    // Decoded, huge.png would need 7.5 GB; refusing it must cost next to nothing.
    const qint64 peakBefore = peakResidentBytes();
    for (const RefusedCase &c : refusedCases) {
        const QString file = path(c.name);
        EXPECT_EQ(describe(m_probe.probe(file)), "refused") << c.name;
        EXPECT_THAT(log.take(),
            ElementsAre(engineInfo(QStringLiteral("Decode probe: %1 %2").arg(file, QString::fromUtf8(c.logTail)))))
            << c.name;
    }
    EXPECT_LT(peakResidentBytes() - peakBefore, qint64(64) << 20);
}

TEST_F(VipsAssetProbeTest, ConcurrentProbesGiveTheSameAnswersAsSequentialOnes)
{
    const std::vector<QString> paths = allPaths();
    LogCapture log(engineInfoOn);
    std::vector<std::string> sequential;
    for (const QString &file : paths)
        sequential.push_back(describe(m_probe.probe(file)));
    const std::vector<std::string> sequentialLines = log.take();
    ASSERT_EQ(sequentialLines.size(), std::size(refusedCases));

    constexpr int threadCount = 4;
    constexpr int rounds = 3;
    std::array<std::vector<std::string>, threadCount> answers;
    std::latch start(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                // Each thread walks the files from a different starting point, so different
                // formats are decoded at the same moment.
                for (size_t i = 0; i < paths.size(); ++i) {
                    const size_t index = (i + size_t(t) * 3) % paths.size();
                    answers[t].push_back(std::to_string(index) + ": " + describe(m_probe.probe(paths[index])));
                }
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (int t = 0; t < threadCount; ++t) {
        SCOPED_TRACE(t);
        std::vector<std::string> expected;
        for (int round = 0; round < rounds; ++round) {
            for (size_t i = 0; i < paths.size(); ++i) {
                const size_t index = (i + size_t(t) * 3) % paths.size();
                expected.push_back(std::to_string(index) + ": " + sequential[index]);
            }
        }
        EXPECT_EQ(answers[t], expected);
    }
    std::vector<std::string> expectedLines;
    for (int n = 0; n < threadCount * rounds; ++n)
        expectedLines.insert(expectedLines.end(), sequentialLines.begin(), sequentialLines.end());
    EXPECT_THAT(log.take(), UnorderedElementsAreArray(expectedLines));
}

} // namespace
} // namespace sorvane
