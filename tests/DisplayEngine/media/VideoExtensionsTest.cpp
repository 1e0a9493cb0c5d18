#include "media/VideoExtensions.h"

#include <gtest/gtest.h>

#include <QSet>

namespace sorvane {
namespace {

struct TierCase {
    friend void PrintTo(const TierCase &c, std::ostream *os) { *os << '"' << c.extension << '"'; }

    const char *extension;
    std::optional<VideoTier> expected;
};

class TierFor : public testing::TestWithParam<TierCase> { };

TEST_P(TierFor, FoldsCaseAndRanksByTier)
{
    EXPECT_EQ(VideoExtensions::tierFor(QString::fromUtf8(GetParam().extension)), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Extensions, TierFor,
    testing::Values(TierCase {"MP4", VideoTier::tier1}, TierCase {"Mov", VideoTier::tier1},
        TierCase {"qt", VideoTier::tier1}, TierCase {"3GPP", VideoTier::tier2}, TierCase {"m2ts", VideoTier::tier2},
        TierCase {"RMVB", VideoTier::tier3}, TierCase {"webm", VideoTier::tier3}, TierCase {"jpg", std::nullopt},
        TierCase {"", std::nullopt}, TierCase {".mp4", std::nullopt}, TierCase {"mp", std::nullopt}));

TEST(VideoExtensions, AllExtensionsIsTheUnionOfTheFourteenTierExtensions)
{
    const QStringList &all = VideoExtensions::allExtensions();
    EXPECT_EQ(QSet<QString>(all.begin(), all.end()).size(), 14);
    EXPECT_EQ(all,
        VideoExtensions::tier1Extensions() + VideoExtensions::tier2Extensions() + VideoExtensions::tier3Extensions());
}

} // namespace
} // namespace sorvane
