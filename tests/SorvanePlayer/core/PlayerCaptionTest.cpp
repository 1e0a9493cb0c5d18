#include "core/PlayerCaption.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

struct CaptionCase {
    const char *name;
    std::optional<QString> sourceName;
    BundleFileDisplayFormat format;
    QString expected;
};

class PlayerCaptionTest : public testing::TestWithParam<CaptionCase> { };

TEST_P(PlayerCaptionTest, WritesTheNameInTheBundlesFormat)
{
    const CaptionCase &c = GetParam();
    EXPECT_EQ(PlayerCaption::text(c.sourceName, QStringLiteral("/media/stick/show/media/full/ab12.jpg"), c.format),
        c.expected);
}

using F = BundleFileDisplayFormat;
INSTANTIATE_TEST_SUITE_P(Formats, PlayerCaptionTest,
    testing::Values(CaptionCase {"filename", QStringLiteral("Trips/2019/Beach.jpg"), F::filenameOnly, "Beach.jpg"},
        CaptionCase {"relative", QStringLiteral("Trips/2019/Beach.jpg"), F::relativePath, "Trips/2019/Beach.jpg"},
        CaptionCase {"parentPlus", QStringLiteral("Trips/2019/Beach.jpg"), F::parentPlusFilename, "2019/Beach.jpg"},
        CaptionCase {"parentPlusAtTop", QStringLiteral("Beach.jpg"), F::parentPlusFilename, "Beach.jpg"},
        CaptionCase {"backslashes", QStringLiteral("Trips\\2019\\Beach.jpg"), F::filenameOnly, "Beach.jpg"},
        CaptionCase {"doubledSlashes", QStringLiteral("/Trips//Beach.jpg/"), F::relativePath, "Trips/Beach.jpg"},
        // A bundle that kept names private gets no caption, never the content hash.
        CaptionCase {"noName", std::nullopt, F::filenameOnly, ""},
        CaptionCase {"blankName", QStringLiteral("  "), F::parentPlusFilename, ""},
        CaptionCase {"absolute", std::nullopt, F::absolutePath, "/media/stick/show/media/full/ab12.jpg"}),
    [](const testing::TestParamInfo<CaptionCase> &info) { return std::string(info.param.name); });

} // namespace
} // namespace sorvane
