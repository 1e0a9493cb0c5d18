#include "CollageTestItems.h"

#include "collage/CollageCoordinator.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageWallModel.h"
#include "slideshow/InMemoryPreferences.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QVariantMap>

#include <algorithm>
#include <functional>
#include <vector>

namespace sorvane {
namespace {

using collagetest::makePool;

constexpr CollageLayout varied = CollageLayout::collage;
constexpr quint64 seed = 7;

// One model over a fresh pool with the user's settings, recording when its wall changed.
struct Harness {
    explicit Harness(CollageLayout layout, double interval = 4.0, const QList<ImageItem> &items = makePool(30),
        CollageCoordinator *coordinator = nullptr, CollageRole role = CollageRole::independent)
        : pool(items)
    {
        store.setImageChangeInterval(interval);
        store.setShuffleVariedLayout(false);
        model.setSettingsStore(&store);
        model.setLayout(layout);
        model.setRole(role);
        model.setCoordinator(coordinator);
        model.setPool(pool, 1);
        QObject::connect(&model, &CollageWallModel::wallChanged,
            [this](CollageMutationKind, const CollageAnimation &) { changedAt.push_back(time.monotonicSeconds()); });
    }

    QList<QUuid> slots() const { return model.wallState().slots; }

    test::FakeTime time;
    InMemoryPreferences preferences;
    CollageSlideshowSettingsStore store {preferences};
    QList<ImageItem> pool;
    CollageWallModel model {time, time, seed};
    std::vector<double> changedAt;
};

QString idText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces);
}

TEST(CollageWallModel, TheHeartbeatChangesTheWallOnlyWhenNothingHoldsItStill)
{
    struct Case {
        const char *name;
        CollageRole role;
        double actAt; // seconds after the wall appeared
        std::function<void(Harness &)> act;
        std::vector<double> expected; // when the wall changed within 10 s, interval 4 s
    };
    const auto nothing = [](Harness &) {};
    const std::vector<Case> cases {
        {"running freely", CollageRole::independent, 0, nothing, {4.0, 8.0}},
        {"paused until 5 s: paused time does not count", CollageRole::independent, 0,
            [](Harness &h) {
                h.model.setPaused(true);
                h.time.advance(5.0);
                h.model.setPaused(false);
            },
            {9.0}},
        {"the menu closed again at 5 s", CollageRole::independent, 0,
            [](Harness &h) {
                h.model.menuOpened("a");
                h.time.advance(5.0);
                h.model.menuClosed("a");
            },
            {9.0}},
        // The click itself changes its tile at 3 s; the clock then waits out the cooldown.
        {"a click at 3 s", CollageRole::independent, 3.0,
            [](Harness &h) { h.model.clickTile(0, true, h.time.monotonicSeconds()); }, {3.0, 5.5, 9.5}},
        {"an ignored click at 3 s", CollageRole::independent, 3.0,
            [](Harness &h) {
                h.model.noteInputEvent(2.9);
                h.model.clickTile(0, true, 3.0);
            },
            {4.0, 8.0}},
        {"a host interaction at 3 s", CollageRole::independent, 3.0,
            [](Harness &h) { h.model.setExternalInteractionAt(3.0); }, {5.5, 9.5}},
        {"the interval shortened to 1 s at 3 s", CollageRole::independent, 3.0,
            [](Harness &h) { h.store.setImageChangeInterval(1.0); }, {3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5}},
        {"a follower without a leader", CollageRole::mirrorFollower, 0, nothing, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        CollageCoordinator coordinator;
        Harness h(varied, 4.0, makePool(30), &coordinator, c.role);
        h.model.appear();
        const QList<QUuid> before = h.slots();
        h.time.advance(c.actAt);
        c.act(h);
        h.time.advance(10.0 - h.time.monotonicSeconds());
        EXPECT_EQ(h.changedAt, c.expected);
        if (c.expected.empty())
            EXPECT_EQ(h.slots(), before);
    }
}

TEST(CollageWallModel, AppearingRestoresOnlyAStateOfTheCurrentPoolGeneration)
{
    const QList<ImageItem> pool = makePool(30);
    Harness source(varied, 1.0, pool);
    // The template changes too, so the restored wall must bring its template back.
    source.store.setShuffleVariedLayout(true);
    source.store.setVariedLayoutInterval(2.0);
    source.model.appear();
    const QList<QUuid> fresh = source.slots();
    source.time.advance(3.0);
    const CollageWallState left = source.model.wallState();
    ASSERT_NE(left.slots, fresh);
    ASSERT_NE(left.variantIndex, 0);

    const struct {
        const char *name;
        qint64 generation;
        CollageLayout layout;
        bool restored;
    } cases[] {
        {"same generation", 1, varied, true},
        {"newer generation", 2, varied, false},
        {"another layout", 1, CollageLayout::scatter, false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Harness h(c.layout, 1.0, pool);
        h.model.setPool(pool, c.generation);
        h.model.setRestoreWall(left);
        EXPECT_EQ(h.model.appear(), c.restored);
        EXPECT_EQ(h.model.wallState().poolGeneration, c.generation);
        if (c.restored) {
            EXPECT_EQ(h.model.wallState(), left);
            EXPECT_EQ(h.model.variantIndex(), left.variantIndex);
        } else if (c.layout == varied)
            EXPECT_EQ(h.slots(), fresh) << "built afresh from the same seed";
    }
}

TEST(CollageWallModel, AutoCyclingChangesFlowTilesBetweenTimedChanges)
{
    for (const bool autoCycle : {false, true}) {
        SCOPED_TRACE(autoCycle ? "on" : "off");
        Harness h(CollageLayout::flow, 1000.0, makePool(200));
        h.model.appear();
        h.store.setFlowAutoCycleTiles(autoCycle);
        h.model.setViewport(1920, 1080);
        const QList<QUuid> start = h.slots();
        h.time.advance(1.0);
        EXPECT_EQ(h.slots(), start);
        h.time.advance(1.0);
        EXPECT_EQ(h.slots() != start, autoCycle);
    }
}

TEST(CollageWallModel, AnUndecodableItemLeavesEveryWallForGood)
{
    for (const CollageLayout layout : allCollageLayouts) {
        SCOPED_TRACE(label(layout).toStdString());
        Harness h(layout, 1.0, makePool(12));
        h.model.appear();
        h.model.setViewport(1920, 1080);
        h.time.advance(2.0);
        const CollageWallState state = h.model.wallState();
        const QUuid bad = layout == CollageLayout::scatter ? state.drops.first().item.id() : state.slots.first();

        h.model.tileFailed(idText(bad));
        for (int i = 0; i < 60; ++i) {
            const CollageWallState now = h.model.wallState();
            EXPECT_FALSE(now.slots.contains(bad));
            EXPECT_TRUE(std::none_of(
                now.drops.cbegin(), now.drops.cend(), [&](const CollageDrop &d) { return d.item.id() == bad; }));
            EXPECT_FALSE(now.slots.contains(QUuid())) << "no slot is left empty while items remain";
            h.time.advance(1.0);
        }
    }
}

} // namespace
} // namespace sorvane
