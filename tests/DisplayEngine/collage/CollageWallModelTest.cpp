#include "CollageTestItems.h"

#include "collage/CollageCoordinator.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageVariedTemplate.h"
#include "collage/CollageWallModel.h"
#include "collage/FlowTuning.h"
#include "slideshow/InMemoryPreferences.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QRectF>
#include <QSet>
#include <QUrl>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
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
        {"paused", CollageRole::independent, 0, [](Harness &h) { h.model.setPaused(true); }, {}},
        {"paused until 5 s: paused time does not count", CollageRole::independent, 0,
            [](Harness &h) {
                h.model.setPaused(true);
                h.time.advance(5.0);
                h.model.setPaused(false);
            },
            {9.0}},
        {"a context menu open", CollageRole::independent, 0, [](Harness &h) { h.model.menuOpened("a"); }, {}},
        {"one of two menus closed", CollageRole::independent, 0,
            [](Harness &h) {
                h.model.menuOpened("a");
                h.model.menuOpened("b");
                h.model.menuClosed("a");
            },
            {}},
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
        {"a history step at 3 s, with nothing to step to", CollageRole::independent, 3.0,
            [](Harness &h) { h.model.step(CollageWallStep::back); }, {5.5, 9.5}},
        {"the interval shortened to 1 s at 3 s", CollageRole::independent, 3.0,
            [](Harness &h) { h.store.setImageChangeInterval(1.0); }, {3.5, 4.5, 5.5, 6.5, 7.5, 8.5, 9.5}},
        {"a follower without a leader", CollageRole::mirrorFollower, 0, nothing, {}},
        {"a follower with a 1 s interval", CollageRole::mirrorFollower, 0,
            [](Harness &h) { h.store.setImageChangeInterval(1.0); }, {}},
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

TEST(CollageWallModel, ClicksStepThroughTheClickedTilesOwnHistory)
{
    Harness h(varied, 1000.0);
    h.model.appear();
    const QList<QUuid> start = h.slots();

    EXPECT_FALSE(h.model.clickTile(2, false, 1.0)) << "no earlier item in the slot yet";
    EXPECT_EQ(h.slots(), start);

    ASSERT_TRUE(h.model.clickTile(2, true, 2.0));
    const QUuid next = h.slots()[2];
    EXPECT_NE(next, start[2]);
    EXPECT_FALSE(start.contains(next)) << "a new item is not one already on the wall";
    QList<QUuid> expected = start;
    expected[2] = next;
    EXPECT_EQ(h.slots(), expected) << "only the clicked tile changes";
    EXPECT_EQ(h.model.tiles()[2].toMap().value("itemId").toString(), idText(next));

    ASSERT_TRUE(h.model.clickTile(2, false, 3.0));
    EXPECT_EQ(h.slots(), start);
    ASSERT_TRUE(h.model.clickTile(2, true, 4.0));
    EXPECT_EQ(h.slots()[2], next) << "forward again returns to the item stepped back from";

    EXPECT_FALSE(h.model.clickTile(-1, true, 5.0));
    EXPECT_FALSE(h.model.clickTile(6, true, 5.0));
    EXPECT_EQ(h.model.lastInteractionAt(), 5.0);
}

TEST(CollageWallModel, AClickRightAfterAnotherInputEventIsIgnored)
{
    const struct {
        double after; // seconds between the input event and the click
        bool taken;
    } cases[] {{0.0, false}, {0.1, false}, {0.199, false}, {0.2, true}, {1.0, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.after);
        Harness h(varied, 1000.0);
        h.model.appear();
        const QList<QUuid> start = h.slots();
        h.model.noteInputEvent(10.0);
        EXPECT_EQ(h.model.clickTile(0, true, 10.0 + c.after), c.taken);
        EXPECT_EQ(h.slots() != start, c.taken);
        EXPECT_EQ(h.model.lastInteractionAt() == 10.0 + c.after, c.taken);
    }
}

TEST(CollageWallModel, DoubleClickCapturesTheWallBeforeDrillingIn)
{
    Harness h(varied);
    h.model.appear();
    h.time.advance(4.5);
    QStringList events;
    CollageWallState captured;
    QObject::connect(&h.model, &CollageWallModel::wallCaptured, [&](const CollageWallState &state) {
        events.append("captured");
        captured = state;
    });
    QObject::connect(
        &h.model, &CollageWallModel::drillIn, [&](const QUuid &item) { events.append("drill " + idText(item)); });

    EXPECT_FALSE(h.model.doubleClickTile(6));
    EXPECT_TRUE(events.isEmpty());

    const QUuid item = h.slots()[1];
    ASSERT_TRUE(h.model.doubleClickTile(1));
    EXPECT_EQ(events, QStringList({"captured", "drill " + idText(item)}));
    EXPECT_EQ(captured, h.model.wallState());
    EXPECT_FALSE(h.model.isRunning());
}

TEST(CollageWallModel, CaptureHandsOutTheStateAndStopsTheHeartbeat)
{
    Harness h(CollageLayout::scatter, 1.0);
    h.model.appear();
    EXPECT_TRUE(h.model.isRunning());
    h.time.advance(3.0);
    std::vector<CollageWallState> captured;
    QObject::connect(
        &h.model, &CollageWallModel::wallCaptured, [&](const CollageWallState &state) { captured.push_back(state); });

    h.model.capture();
    ASSERT_EQ(captured.size(), 1U);
    EXPECT_EQ(captured[0], h.model.wallState());
    EXPECT_EQ(captured[0].drops.size(), 4) << "the first photo and three drops";
    EXPECT_FALSE(h.model.isRunning());
    EXPECT_EQ(h.time.pendingTimers(), 0U);
    const size_t changes = h.changedAt.size();
    h.time.advance(20.0);
    EXPECT_EQ(h.changedAt.size(), changes);
}

TEST(CollageWallModel, AppearingRestoresOnlyAStateOfTheCurrentPoolGeneration)
{
    const QList<ImageItem> pool = makePool(30);
    Harness source(varied, 1.0, pool);
    source.model.appear();
    const QList<QUuid> fresh = source.slots();
    source.time.advance(3.0);
    const CollageWallState left = source.model.wallState();
    ASSERT_NE(left.slots, fresh);

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
        if (c.restored)
            EXPECT_EQ(h.model.wallState(), left);
        else if (c.layout == varied)
            EXPECT_EQ(h.slots(), fresh) << "built afresh from the same seed";
    }
}

TEST(CollageWallModel, AFollowerCopiesItsLeaderAndNothingElse)
{
    const QList<ImageItem> pool = makePool(30);
    CollageCoordinator coordinator;
    Harness leader(varied, 1.0, pool, &coordinator, CollageRole::mirrorLeader);
    Harness follower(varied, 1.0, pool, &coordinator, CollageRole::mirrorFollower);
    leader.model.appear();
    follower.model.appear();
    EXPECT_EQ(follower.slots(), leader.slots());

    leader.time.advance(1.0);
    ASSERT_EQ(leader.changedAt.size(), 1U);
    EXPECT_EQ(follower.slots(), leader.slots());
    EXPECT_EQ(follower.model.tiles(), leader.model.tiles());

    // The follower's own time runs on without its leader: it stays as it is.
    const QList<QUuid> copied = follower.slots();
    follower.time.advance(30.0);
    EXPECT_EQ(follower.slots(), copied);
}

TEST(CollageWallModel, HistoryStepsUndoAndRedoAutomaticChanges)
{
    Harness h(varied, 4.0);
    h.model.appear();
    const QList<QUuid> start = h.slots();
    h.time.advance(4.0);
    const QList<QUuid> changed = h.slots();
    ASSERT_NE(changed, start);

    EXPECT_TRUE(h.model.step(CollageWallStep::back));
    EXPECT_EQ(h.slots(), start);
    EXPECT_FALSE(h.model.step(CollageWallStep::back));
    EXPECT_TRUE(h.model.step(CollageWallStep::forward));
    EXPECT_EQ(h.slots(), changed);
    EXPECT_EQ(h.model.lastInteractionAt(), 4.0);
}

TEST(CollageWallModel, PublishesWhatTheViewDrawsForEachLayout)
{
    for (const CollageLayout layout : allCollageLayouts) {
        SCOPED_TRACE(label(layout).toStdString());
        Harness h(layout, 1.0);
        int tileSignals = 0;
        int dropSignals = 0;
        QObject::connect(&h.model, &CollageWallModel::tilesChanged, [&] { ++tileSignals; });
        QObject::connect(&h.model, &CollageWallModel::dropsChanged, [&] { ++dropSignals; });
        h.model.appear();
        if (layout == CollageLayout::flow)
            h.model.setViewport(800, 600);
        h.time.advance(1.0);

        const CollageWallState state = h.model.wallState();
        const QVariantList tiles = h.model.tiles();
        ASSERT_EQ(tiles.size(), state.slots.size());
        for (qsizetype slot = 0; slot < tiles.size(); ++slot) {
            const QVariantMap tile = tiles[slot].toMap();
            EXPECT_EQ(tile.value("slot").toInt(), slot);
            EXPECT_EQ(tile.value("itemId").toString(), idText(state.slots[slot]));
            const auto item = std::find_if(
                h.pool.cbegin(), h.pool.cend(), [&](const ImageItem &i) { return i.id() == state.slots[slot]; });
            ASSERT_NE(item, h.pool.cend());
            EXPECT_EQ(tile.value("url").toUrl(), item->url());
        }
        EXPECT_EQ(tileSignals > 0, !tiles.isEmpty());

        const QVariantList drops = h.model.drops();
        ASSERT_EQ(drops.size(), state.drops.size());
        for (qsizetype i = 0; i < drops.size(); ++i) {
            const QVariantMap drop = drops[i].toMap();
            EXPECT_EQ(drop.value("itemId").toString(), idText(state.drops[i].item.id()));
            EXPECT_EQ(drop.value("url").toUrl(), state.drops[i].item.url());
            EXPECT_EQ(drop.value("x").toDouble(), state.drops[i].unit.x());
            EXPECT_EQ(drop.value("y").toDouble(), state.drops[i].unit.y());
            EXPECT_EQ(drop.value("rotation").toDouble(), state.drops[i].rotation);
            EXPECT_EQ(drop.value("scale").toDouble(), state.drops[i].scale);
        }
        EXPECT_EQ(dropSignals > 0, !drops.isEmpty());

        switch (layout) {
        case CollageLayout::collage:
            EXPECT_EQ(tiles.size(), CollageVariedTemplate::slotCount);
            EXPECT_TRUE(drops.isEmpty());
            break;
        case CollageLayout::flow:
            // 800 wide: two strips of 391; six tiles each (ceil(600 / (391 × 0.8)) + 4).
            EXPECT_EQ(tiles.size(), 12);
            EXPECT_TRUE(drops.isEmpty());
            break;
        case CollageLayout::scatter:
            EXPECT_TRUE(tiles.isEmpty());
            EXPECT_EQ(drops.size(), 2) << "the first photo and one drop";
            break;
        }
        EXPECT_EQ(h.model.variedRects().isEmpty(), layout != varied);
    }
}

TEST(CollageWallModel, AReshuffleRepublishesTheVariedTemplate)
{
    Harness h(varied, 1000.0);
    h.store.setShuffleVariedLayout(true);
    h.store.setVariedLayoutInterval(2.0);
    int rectSignals = 0;
    QObject::connect(&h.model, &CollageWallModel::variedRectsChanged, [&] { ++rectSignals; });
    h.model.appear();
    const auto rectsOf = [](int variant) {
        QVariantList rects;
        for (const QRectF &rect : CollageVariedTemplate::variant(variant))
            rects.append(rect);
        return rects;
    };
    EXPECT_EQ(h.model.variedRects(), rectsOf(h.model.variantIndex()));
    const int first = h.model.variantIndex();
    const int signalsBefore = rectSignals;

    h.time.advance(2.0);
    EXPECT_NE(h.model.variantIndex(), first);
    EXPECT_EQ(h.model.variedRects(), rectsOf(h.model.variantIndex()));
    EXPECT_EQ(rectSignals, signalsBefore + 1);
}

struct FlowCase {
    const char *name;
    double width;
    double height;
    FlowOrientation orientation;
    qint64 adjustment;
    int strips;
    int tilesPerStrip;
};

TEST(CollageWallModel, FlowStripsAreSeededForTheViewportAndItsSettings)
{
    const double spacing = FlowTuning::flowSpacing;
    const FlowCase cases[] = {
        // 1920 / 400 rounds to 5 columns of 376.8; 1080 / (376.8 × 0.8) needs 4 tiles, plus 4.
        {"landscape", 1920, 1080, FlowOrientation::vertical, 0, 5, 8},
        // 1080 / 400 rounds to 3 columns of 352; 1920 / 281.6 needs 7.
        {"portrait", 1080, 1920, FlowOrientation::vertical, 0, 3, 11},
        // Rows: 1080 / 400 rounds to 3 rows of 352, tiles estimated square: 1920 / 352 needs 6.
        {"rows", 1920, 1080, FlowOrientation::horizontal, 0, 3, 10},
        {"fewest", 1920, 1080, FlowOrientation::vertical, -6, 2, 6},
        {"most", 1920, 1080, FlowOrientation::vertical, 6, 8, 10},
    };
    for (const FlowCase &c : cases) {
        SCOPED_TRACE(c.name);
        Harness h(CollageLayout::flow, 4.0, makePool(200));
        h.store.setFlowOrientation(c.orientation);
        h.store.setFlowColumnAdjustment(c.adjustment);
        h.model.appear();
        h.model.setViewport(c.width, c.height);

        EXPECT_EQ(h.model.flowColumnCount(), c.strips);
        const QVariantList strips = h.model.flowStrips();
        ASSERT_EQ(strips.size(), c.strips);
        const double cross = c.orientation == FlowOrientation::vertical ? c.width : c.height;
        const double thickness = (cross - spacing * (c.strips + 1)) / c.strips;
        QSet<int> slotsSeen;
        for (int i = 0; i < strips.size(); ++i) {
            const QVariantMap strip = strips[i].toMap();
            EXPECT_EQ(strip.value("horizontal").toBool(), c.orientation == FlowOrientation::horizontal);
            EXPECT_DOUBLE_EQ(strip.value("thickness").toDouble(), thickness);
            EXPECT_DOUBLE_EQ(strip.value("crossStart").toDouble(), spacing + i * (thickness + spacing));
            const QVariantList tiles = strip.value("tiles").toList();
            ASSERT_EQ(tiles.size(), c.tilesPerStrip);
            double end = 0;
            for (const QVariant &tile : tiles) {
                const QVariantMap t = tile.toMap();
                slotsSeen.insert(t.value("slot").toInt());
                // Unmeasured items are square until their image says otherwise.
                EXPECT_DOUBLE_EQ(t.value("length").toDouble(), thickness);
                EXPECT_DOUBLE_EQ(t.value("start").toDouble(), end);
                end += thickness + spacing;
            }
            EXPECT_DOUBLE_EQ(strip.value("cycle").toDouble(), end);
            // Enough copies that the strip covers the screen at any phase.
            const double mainExtent = c.orientation == FlowOrientation::vertical ? c.height : c.width;
            EXPECT_GE(strip.value("copies").toInt() * end, mainExtent + end);
        }
        EXPECT_EQ(slotsSeen.size(), c.strips * c.tilesPerStrip) << "every slot is drawn exactly once";
    }
}

TEST(CollageWallModel, ChangedSizeOrColumnAdjustmentReseedsTheFlowWall)
{
    Harness h(CollageLayout::flow, 4.0, makePool(200));
    int countSignals = 0;
    QObject::connect(&h.model, &CollageWallModel::flowColumnCountChanged, [&] { ++countSignals; });
    h.model.appear();
    EXPECT_TRUE(h.model.flowStrips().isEmpty()) << "nothing is seeded before the wall has a size";

    h.model.setViewport(1920, 1080);
    EXPECT_EQ(h.model.flowColumnCount(), 5);
    h.store.adjustFlowColumns(1);
    EXPECT_EQ(h.model.flowColumnCount(), 6);
    EXPECT_EQ(h.model.flowStrips().size(), 6);
    h.model.setViewport(1080, 1920);
    EXPECT_EQ(h.model.flowColumnCount(), 4);
    // 2 (no size yet), 5, 6, 4.
    EXPECT_EQ(countSignals, 4);

    // A restored wall of the same size keeps its slots.
    const CollageWallState before = h.model.wallState();
    h.model.capture();
    h.model.setRestoreWall(before);
    EXPECT_TRUE(h.model.appear());
    EXPECT_EQ(h.model.wallState(), before);
}

TEST(CollageWallModel, FlowOffsetsFollowTheClockAndEveryHold)
{
    Harness h(CollageLayout::flow, 1000.0, makePool(200));
    h.store.setFlowScrollSpeed(18);
    h.store.setFlowScrollPointerPause(0.5);
    h.model.appear();
    h.model.setViewport(1920, 1080);
    const QVariantList strips = h.model.flowStrips();
    const double cycle0 = strips[0].toMap().value("cycle").toDouble();
    const double cycle1 = strips[1].toMap().value("cycle").toDouble();
    auto offsets = [&] {
        QList<double> values;
        for (const QVariant &value : h.model.flowOffsets())
            values << value.toDouble();
        return values;
    };
    const QList<double> start = offsets();
    ASSERT_EQ(start.size(), 5);

    h.time.advance(2.0);
    // Neighbouring strips run opposite ways, 36 points in two seconds, within their cycles.
    EXPECT_NEAR(offsets()[0], std::fmod(start[0] + 36.0, cycle0), 1e-6);
    EXPECT_NEAR(offsets()[1], std::fmod(start[1] - 36.0 + cycle1, cycle1), 1e-6);

    h.model.setPaused(true);
    const QList<double> paused = offsets();
    h.time.advance(3.0);
    EXPECT_EQ(offsets(), paused) << "a paused wall stands still";
    h.model.setPaused(false);

    h.model.pointerMoved();
    const QList<double> pointed = offsets();
    h.time.advance(0.4);
    h.model.pointerMoved();
    h.time.advance(0.4);
    EXPECT_EQ(offsets(), pointed) << "a newer movement restarts the pause";
    h.time.advance(0.1);
    EXPECT_EQ(offsets(), pointed) << "half a second after the last movement it resumes from where it stood";
    h.time.advance(1.0);
    EXPECT_NEAR(offsets()[0], std::fmod(pointed[0] + 18.0, cycle0), 1e-6);

    // A new speed carries on from where the strips are.
    const QList<double> before = offsets();
    h.store.setFlowScrollSpeed(64);
    EXPECT_EQ(offsets(), before);
    h.time.advance(1.0);
    EXPECT_NEAR(offsets()[0], std::fmod(before[0] + 64.0, cycle0), 1e-6);
}

TEST(CollageWallModel, AMeasuredAspectReshapesItsTile)
{
    Harness h(CollageLayout::flow, 1000.0, makePool(200));
    h.model.appear();
    h.model.setViewport(1920, 1080);
    const QVariantMap tile = h.model.flowStrips()[0].toMap().value("tiles").toList()[0].toMap();
    const double thickness = h.model.flowStrips()[0].toMap().value("thickness").toDouble();

    int stripSignals = 0;
    QObject::connect(&h.model, &CollageWallModel::flowStripsChanged, [&] { ++stripSignals; });
    h.model.reportAspect(tile.value("itemId").toString(), 2.0);
    h.model.reportAspect(tile.value("itemId").toString(), 2.0);
    h.model.reportAspect(tile.value("itemId").toString(), std::nan(""));
    h.model.reportAspect(QStringLiteral("not an id"), 2.0);
    EXPECT_EQ(stripSignals, 1);
    const QVariantMap wide = h.model.flowStrips()[0].toMap().value("tiles").toList()[0].toMap();
    EXPECT_DOUBLE_EQ(wide.value("length").toDouble(), thickness / 2.0);
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

TEST(CollageWallModel, AutoCyclingChangesFlowTilesBetweenTimedChanges)
{
    for (const bool autoCycle : {false, true}) {
        SCOPED_TRACE(autoCycle ? "on" : "off");
        Harness h(CollageLayout::flow, 1000.0, makePool(200));
        h.store.setFlowAutoCycleTiles(autoCycle);
        h.model.appear();
        h.model.setViewport(1920, 1080);
        const QList<QUuid> start = h.slots();
        h.time.advance(1.0);
        EXPECT_EQ(h.slots(), start);
        h.time.advance(1.0);
        EXPECT_EQ(h.slots() != start, autoCycle);
    }
}

} // namespace
} // namespace sorvane
