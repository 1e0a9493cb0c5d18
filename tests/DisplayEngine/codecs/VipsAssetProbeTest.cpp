#include "codecs/VipsAssetProbe.h"
#include "codecs/VipsRuntime.h"
#include "support/LogCapture.h"
#include "support/TestFiles.h"
#include "support/ThreadAgreement.h"

#include "ImageSamples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFileInfo>

#include <string>
#include <vector>

namespace sorvane {
namespace {

using ::testing::IsEmpty;

struct ProbeCase {
    const char *file;
    const char *answer; // "WxH" for a decodable file, else the end of its log line
};

const ProbeCase probeCases[] = {
    {"noise.jpg", "320x200"},
    {"first-frame.gif", "300x200"},
    // Brackets are ordinary in photo names; libvips reads a bracketed suffix of a name as load options.
    {"Été à Nice [2].jpg", "80x53"},
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
        ASSERT_TRUE(VipsRuntime::ensureStarted());
        for (const ProbeCase &c : probeCases)
            m_paths.push_back(test::imageSamples().path(QString::fromUtf8(c.file)));
    }

    // One comparable text per answer, so that tables and threads are checked by plain equality.
    std::string answer(size_t index) const
    {
        const std::optional<BundleProbeResult> result = m_probe.probe(m_paths[index]);
        if (!result)
            return "refused";
        return std::to_string(result->width) + "x" + std::to_string(result->height) + ", "
            + std::to_string(result->bytes) + " bytes";
    }

    std::vector<QString> m_paths;
    VipsAssetProbe m_probe;
    // The probe's lines are info messages, which the environment's logging rules may hide.
    test::LogCapture m_log {QStringLiteral("sorvane.engine.info=true")};
};

TEST_F(VipsAssetProbeTest, EachFileGetsItsAnswerAndRefusalsTheirOwnLogLine)
{
    // Decoded, huge.png would need 7.5 GB; refusing it must cost next to nothing.
    const qint64 peakBefore = test::peakResidentBytes();
    for (size_t i = 0; i < std::size(probeCases); ++i) {
        const ProbeCase &c = probeCases[i];
        const bool decodable = std::isdigit(static_cast<unsigned char>(c.answer[0]));
        const std::vector<std::string> lines {test::logLine("sorvane.engine", "info",
            QStringLiteral("Decode probe: %1 %2").arg(m_paths[i], QString::fromUtf8(c.answer)))};
        EXPECT_EQ(answer(i),
            decodable ? c.answer + (", " + std::to_string(QFileInfo(m_paths[i]).size()) + " bytes") : "refused")
            << c.file;
        EXPECT_EQ(m_log.take(), decodable ? std::vector<std::string> {} : lines) << c.file;
    }
    EXPECT_LT(test::peakResidentBytes() - peakBefore, qint64(64) << 20);
}

TEST_F(VipsAssetProbeTest, ConcurrentProbesGiveTheSameAnswersAsSequentialOnes)
{
    test::expectSameAnswersOnThreads(
        m_paths.size(), [&](size_t i) { return answer(i); }, 3);
    // Seven refusals, each logged once a time: sequentially, then three rounds on four threads.
    EXPECT_EQ(m_log.take().size(), 7u * 13);
}

} // namespace
} // namespace sorvane
