#include "bundle/BundleWireValues.h"
#include "collage/CollageLayout.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(CollageEnums, StoredAndManifestWordsForTheVariedWallDiffer)
{
    // Stored settings say "collage", manifests say "varied": each reader only knows its own word.
    EXPECT_EQ(toRaw(CollageLayout::collage), QStringLiteral("collage"));
    EXPECT_EQ(toWire(CollageLayout::collage), QStringLiteral("varied"));
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("varied")), CollageLayout::collage);
    EXPECT_EQ(fromWire<CollageLayout>(QStringLiteral("collage")), std::nullopt);
    for (const char *raw : {"varied", "Collage", " flow", ""})
        EXPECT_EQ(fromRaw<CollageLayout>(QString::fromUtf8(raw)), std::nullopt) << raw;
}

} // namespace
} // namespace sorvane
