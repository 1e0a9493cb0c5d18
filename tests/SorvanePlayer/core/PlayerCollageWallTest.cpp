#include "core/PlayerCollageWall.h"

#include "bundle/BundleReader.h"
#include "collage/CollageWallModel.h"
#include "support/BundleFixture.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using test::BundleFixture;
using test::FakeTime;

TEST(PlayerCollageWallLayout, EachStyleDrawsItsWall)
{
    struct Case {
        PlayerStyle style;
        CollageLayout bundleLayout;
        std::optional<CollageLayout> drawn;
    };
    const Case cases[] = {
        {PlayerStyle::photoWall, CollageLayout::flow, CollageLayout::flow},
        {PlayerStyle::photoWall, CollageLayout::collage, CollageLayout::collage},
        // A bundle that asks for the table still gets a wall of tiles in the photo-wall style.
        {PlayerStyle::photoWall, CollageLayout::scatter, CollageLayout::flow},
        {PlayerStyle::memoryTable, CollageLayout::collage, CollageLayout::scatter},
        {PlayerStyle::classic, CollageLayout::flow, std::nullopt},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(toRaw(c.style).toStdString() + " / " + toRaw(c.bundleLayout).toStdString());
        EXPECT_EQ(PlayerCollageWall::layoutFor(c.style, c.bundleLayout), c.drawn);
    }
}

class PlayerCollageWallTest : public testing::Test {
protected:
    void SetUp() override
    {
        for (const char *id : {"a", "b", "c", "d", "e", "f", "g", "h"})
            fixture.addItem(id, {{"tile", 8}, {"full", 9}});
        fixture.addItem("poster", {{"video", 10}, {"full", 6}}, "video");
        fixture.addItem("bare", {{"video", 10}}, "video");
        fixture.manifest.playback = BundlePlaybackJSON {};
        fixture.manifest.playback->sort = "sequential";
        fixture.manifest.playback->collageLayout = "varied";
        fixture.manifest.playback->flow = BundleFlowJSON {};
        fixture.manifest.playback->flow->scrollSpeed = 40.0;
    }

    PlayerCollageWall &open(const CollageSlideshowSettings &viewer = {})
    {
        fixture.writeManifest();
        BundleOpenResult result = BundleReader::open(fixture.root());
        EXPECT_TRUE(result.ok());
        bundle = result.bundle;
        wall = std::make_unique<PlayerCollageWall>(*bundle, viewer, time, time);
        return *wall;
    }

    BundleFixture fixture;
    FakeTime time;
    std::shared_ptr<OpenedBundle> bundle;
    std::unique_ptr<PlayerCollageWall> wall;
};

TEST_F(PlayerCollageWallTest, ThePoolHoldsEveryStillInPlayOrderAndAVideoByItsPoster)
{
    open();
    QStringList files;
    for (const ImageItem &item : wall->pool())
        files << item.url().fileName().section('.', 0, 0);
    // The small copies where there are any; a video without a still stays off the wall.
    EXPECT_EQ(files, (QStringList {"a", "b", "c", "d", "e", "f", "g", "h", "poster"}));
    EXPECT_TRUE(wall->pool().first().url().path().contains("/tile/"));
}

TEST_F(PlayerCollageWallTest, TheBundlesPreferencesGoOverTheViewersWithoutReplacingThem)
{
    CollageSlideshowSettings viewer;
    viewer.imageChangeInterval = 9.0;
    viewer.flowScrollSpeed = 12.0;
    open(viewer);
    EXPECT_EQ(wall->settings().flowScrollSpeed(), 40.0);
    EXPECT_EQ(wall->settings().imageChangeInterval(), 9.0);
    EXPECT_EQ(viewer.flowScrollSpeed, 12.0);
}

TEST_F(PlayerCollageWallTest, EveryScreenGetsItsOwnWallAndFindsItAsItWasLeft)
{
    open();
    EXPECT_TRUE(wall->wallsFor(PlayerStyle::classic, 2).isEmpty());

    QList<CollageWallModel *> walls = wall->wallsFor(PlayerStyle::photoWall, 2);
    ASSERT_EQ(walls.size(), 2);
    for (CollageWallModel *screen : walls) {
        EXPECT_EQ(screen->layout(), CollageLayout::collage);
        screen->setViewport(800, 600);
        screen->appear();
    }
    EXPECT_NE(walls[0]->wallState().slots, walls[1]->wallState().slots) << "each screen deals its own wall";
    const CollageWallState left = walls[1]->wallState();

    ASSERT_EQ(wall->wallsFor(PlayerStyle::memoryTable, 2).first()->layout(), CollageLayout::scatter);
    walls = wall->wallsFor(PlayerStyle::photoWall, 2);
    EXPECT_TRUE(walls[1]->appear()) << "back to the same wall";
    EXPECT_EQ(walls[1]->wallState(), left);
}

TEST_F(PlayerCollageWallTest, KeysAndDoubleClicksReachTheWalls)
{
    open();
    const QList<CollageWallModel *> walls = wall->wallsFor(PlayerStyle::photoWall, 1);
    CollageWallModel &screen = *walls.first();
    screen.appear();
    const QList<QUuid> start = screen.wallState().slots;

    // A key press counts as an interaction and swallows a click right after it.
    wall->noteInput();
    EXPECT_FALSE(screen.clickTile(0, true, time.monotonicSeconds() + 0.1));
    EXPECT_EQ(screen.externalInteractionAt(), time.monotonicSeconds());

    wall->step(+1);
    const QList<QUuid> next = screen.wallState().slots;
    EXPECT_NE(next, start) << "forward with nothing to redo brings new photos";
    wall->step(-1);
    EXPECT_EQ(screen.wallState().slots, start);
    wall->step(+1);
    EXPECT_EQ(screen.wallState().slots, next) << "and forward after back redoes";

    wall->setPaused(true);
    EXPECT_TRUE(screen.isPaused());

    QStringList opened;
    QObject::connect(wall.get(), &PlayerCollageWall::openItem, [&](const QString &id) { opened << id; });
    const QUuid shown = screen.wallState().slots.first();
    const auto item
        = std::find_if(wall->pool().cbegin(), wall->pool().cend(), [&](const ImageItem &i) { return i.id() == shown; });
    ASSERT_NE(item, wall->pool().cend());
    ASSERT_TRUE(screen.doubleClickTile(0));
    EXPECT_EQ(opened, QStringList {item->url().fileName().section('.', 0, 0)});
}

} // namespace
} // namespace sorvane
