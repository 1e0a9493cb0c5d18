#include "bundle/BundleWireValues.h"
#include "collage/CollageLayout.h"
#include "collage/FlowOrientation.h"
#include "collage/FlowWeightMode.h"

#include <gtest/gtest.h>

#include <vector>

namespace sorvane {
namespace {

template <typename Enum> struct Case {
    Enum value;
    const char *raw;
    const char *label; // nullptr: the type has no labels
};

template <typename Enum, size_t N>
void expectCases(const std::array<Enum, N> &all, const std::vector<Case<Enum>> &expected)
{
    ASSERT_EQ(all.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        const Case<Enum> &c = expected[i];
        EXPECT_EQ(all[i], c.value) << "position " << i;
        EXPECT_EQ(toRaw(c.value), QString::fromUtf8(c.raw));
        EXPECT_EQ(fromRaw<Enum>(QString::fromUtf8(c.raw)), c.value) << c.raw;
        if constexpr (requires { label(c.value); })
            EXPECT_EQ(label(c.value), QString::fromUtf8(c.label)) << c.raw;
    }
}

TEST(CollageEnums, RawValuesLabelsAndMenuOrder)
{
    expectCases<CollageLayout>(allCollageLayouts,
        {{CollageLayout::collage, "collage", "Varied"}, {CollageLayout::flow, "flow", "Flow"},
            {CollageLayout::scatter, "scatter", "Scatter"}});
    expectCases<FlowWeightMode>(allFlowWeightModes,
        {{FlowWeightMode::proportional, "proportional", nullptr}, {FlowWeightMode::weighted, "weighted", nullptr}});
    expectCases<FlowOrientation>(allFlowOrientations,
        {{FlowOrientation::vertical, "vertical", "Vertical"},
            {FlowOrientation::horizontal, "horizontal", "Horizontal"}});
}

TEST(CollageEnums, StoredTextMatchesExactly)
{
    for (const char *raw : {"Varied", "varied", "Collage", "Scatter", " flow", "flow ", ""})
        EXPECT_EQ(fromRaw<CollageLayout>(QString::fromUtf8(raw)), std::nullopt) << raw;
    for (const char *raw : {"Weighted", "weight", ""})
        EXPECT_EQ(fromRaw<FlowWeightMode>(QString::fromUtf8(raw)), std::nullopt) << raw;
    for (const char *raw : {"Horizontal", "horizontal ", ""})
        EXPECT_EQ(fromRaw<FlowOrientation>(QString::fromUtf8(raw)), std::nullopt) << raw;
}

TEST(CollageEnums, ManifestsNameTheVariedWallVaried)
{
    // Stored settings say "collage", manifests say "varied": each reader only knows its own word.
    EXPECT_EQ(toWire(CollageLayout::collage), QStringLiteral("varied"));
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("varied")), CollageLayout::collage);
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("collage")), std::nullopt);
    EXPECT_EQ(toWire(CollageLayout::flow), QStringLiteral("flow"));
    EXPECT_EQ(toWire(CollageLayout::scatter), QStringLiteral("scatter"));
    for (const FlowOrientation orientation : allFlowOrientations)
        EXPECT_EQ(toWire(orientation), toRaw(orientation));
    for (const FlowWeightMode mode : allFlowWeightModes)
        EXPECT_EQ(toWire(mode), toRaw(mode));
}

} // namespace
} // namespace sorvane
