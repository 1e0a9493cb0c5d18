#include "core/ControlsVisibility.h"
#include "core/PlayerControlsController.h"
#include "core/PlayerControlsModel.h"
#include "support/FakeTime.h"

#include <gtest/gtest.h>

#include <QMetaObject>
#include <QMetaProperty>
#include <QVariantMap>

#include <memory>
#include <string>
#include <vector>

namespace sorvane {

// Readable failure messages; found by argument-dependent lookup.
static void PrintTo(const ControlButton &button, std::ostream *out)
{
    *out << button.symbol.toStdString() << " / " << button.label.toStdString() << (button.selected ? " (selected)" : "")
         << " action " << int(button.action);
}

namespace {

// Counts emissions of one signal without QtTest.
template <typename Signal> std::shared_ptr<int> countSignal(PlayerControlsModel &model, Signal signal)
{
    auto count = std::make_shared<int>(0);
    QObject::connect(&model, signal, &model, [count] { ++*count; });
    return count;
}

// Records every handler call of a model, in order, as text.
std::shared_ptr<std::vector<std::string>> recordHandlers(PlayerControlsModel &model)
{
    auto calls = std::make_shared<std::vector<std::string>>();
    model.onExit = [calls] { calls->push_back("exit"); };
    model.onTogglePause = [calls] { calls->push_back("togglePause"); };
    model.onNext = [calls] { calls->push_back("next"); };
    model.onPrevious = [calls] { calls->push_back("previous"); };
    model.onStyle = [calls](PlayerStyle style) { calls->push_back("style " + toRaw(style).toStdString()); };
    return calls;
}

// ---- buttons ----

struct ButtonsCase {
    bool paused;
    PlayerStyle style;
    const char *playSymbol;
    const char *playLabel;
    bool classicSelected, photoWallSelected, memoryTableSelected;
};

TEST(PlayerControlsModel, ButtonsInPanelOrderFollowPauseAndStyle)
{
    const std::vector<ButtonsCase> cases {
        {false, PlayerStyle::photoWall, "pause.fill", "Pause", false, true, false},
        {true, PlayerStyle::photoWall, "play.fill", "Play", false, true, false},
        {false, PlayerStyle::memoryTable, "pause.fill", "Pause", false, false, true},
        {true, PlayerStyle::classic, "play.fill", "Play", true, false, false},
        {false, PlayerStyle::classic, "pause.fill", "Pause", true, false, false},
    };
    for (const ButtonsCase &row : cases) {
        PlayerControlsModel model;
        model.setPaused(row.paused);
        model.setStyle(row.style);
        const QList<ControlButton> expected {
            {"backward.end.fill", "Previous", false, PlayerAction::previous},
            {row.playSymbol, row.playLabel, false, PlayerAction::togglePause},
            {"forward.end.fill", "Next", false, PlayerAction::next},
            {"rectangle.fill", "Classic", row.classicSelected, PlayerAction::styleClassic},
            {"square.grid.3x3.fill", "Photo Wall", row.photoWallSelected, PlayerAction::stylePhotoWall},
            {"photo.on.rectangle.angled", "Memory Table", row.memoryTableSelected, PlayerAction::styleMemoryTable},
            {"xmark", "Exit", false, PlayerAction::exit},
        };
        EXPECT_EQ(model.buttons(), expected) << "paused " << row.paused << " style " << toRaw(row.style).toStdString();
    }
}

TEST(PlayerControlsModel, ButtonListMirrorsButtonsForQml)
{
    PlayerControlsModel model;
    model.setPaused(true);
    model.setStyle(PlayerStyle::memoryTable);

    const QVariantList list = model.property("buttons").toList();
    ASSERT_EQ(list.size(), model.buttons().size());
    const std::vector<std::pair<const char *, const char *>> actions {{"previous", ""}, {"togglePause", ""},
        {"next", ""}, {"chooseStyle", "classic"}, {"chooseStyle", "photo-wall"}, {"chooseStyle", "memory-table"},
        {"exit", ""}};
    for (int i = 0; i < list.size(); ++i) {
        const QVariantMap entry = list.at(i).toMap();
        const ControlButton &button = model.buttons().at(i);
        EXPECT_EQ(entry.value("symbol").toString(), button.symbol) << i;
        EXPECT_EQ(entry.value("label").toString(), button.label) << i;
        EXPECT_EQ(entry.value("selected").toBool(), button.selected) << i;
        EXPECT_EQ(entry.value("action").toString(), QString::fromLatin1(actions[i].first)) << i;
        EXPECT_EQ(entry.value("style").toString(), QString::fromLatin1(actions[i].second)) << i;
    }
    EXPECT_EQ(list.at(1).toMap().value("label").toString(), "Play");
    EXPECT_TRUE(list.at(5).toMap().value("selected").toBool());
}

TEST(PlayerControlsModel, EachButtonsNamedInvokableReachesItsHandler)
{
    // Exactly what a QML button does with its entry.
    PlayerControlsModel model;
    const auto calls = recordHandlers(model);
    const std::vector<std::string> expected {
        "previous", "togglePause", "next", "style classic", "style photo-wall", "style memory-table", "exit"};

    const QVariantList list = model.buttonList();
    ASSERT_EQ(list.size(), qsizetype(expected.size()));
    for (int i = 0; i < list.size(); ++i) {
        const QVariantMap entry = list.at(i).toMap();
        const QByteArray method = entry.value("action").toString().toLatin1();
        calls->clear();
        const bool invoked = entry.value("style").toString().isEmpty()
            ? QMetaObject::invokeMethod(&model, method.constData())
            : QMetaObject::invokeMethod(&model, method.constData(), Q_ARG(QString, entry.value("style").toString()));
        ASSERT_TRUE(invoked) << method.constData();
        EXPECT_EQ(*calls, std::vector<std::string> {expected[i]}) << i;

        calls->clear();
        model.perform(model.buttons().at(i).action);
        EXPECT_EQ(*calls, std::vector<std::string> {expected[i]}) << i;
    }
}

TEST(PlayerControlsModel, InvokablesCallOnlyTheirHandlerOnce)
{
    struct Row {
        const char *name;
        std::function<void(PlayerControlsModel &)> act;
        std::vector<std::string> expected;
    };
    const std::vector<Row> rows {
        {"togglePause", [](PlayerControlsModel &m) { m.togglePause(); }, {"togglePause"}},
        {"next", [](PlayerControlsModel &m) { m.next(); }, {"next"}},
        {"previous", [](PlayerControlsModel &m) { m.previous(); }, {"previous"}},
        {"exit", [](PlayerControlsModel &m) { m.exit(); }, {"exit"}},
        {"classic", [](PlayerControlsModel &m) { m.chooseStyle("classic"); }, {"style classic"}},
        {"photo-wall", [](PlayerControlsModel &m) { m.chooseStyle("photo-wall"); }, {"style photo-wall"}},
        {"memory-table", [](PlayerControlsModel &m) { m.chooseStyle("memory-table"); }, {"style memory-table"}},
        {"label, not raw", [](PlayerControlsModel &m) { m.chooseStyle("Classic"); }, {}},
        {"empty style", [](PlayerControlsModel &m) { m.chooseStyle(""); }, {}},
    };
    for (const Row &row : rows) {
        PlayerControlsModel model;
        const auto calls = recordHandlers(model);
        row.act(model);
        EXPECT_EQ(*calls, row.expected) << row.name;
        // Buttons forward; the engine decides and sets the state back.
        EXPECT_FALSE(model.isPaused()) << row.name;
        EXPECT_EQ(model.style(), PlayerStyle::photoWall) << row.name;
    }
}

TEST(PlayerControlsModel, ButtonsWithoutHandlersDoNothing)
{
    PlayerControlsModel model;
    model.togglePause();
    model.next();
    model.previous();
    model.chooseStyle("classic");
    model.exit();
    for (const ControlButton &button : model.buttons())
        model.perform(button.action);
    EXPECT_FALSE(model.isPaused());
    EXPECT_EQ(model.style(), PlayerStyle::photoWall);
}

TEST(PlayerControlsModel, NotifiesEachPropertyOnlyWhenItChanges)
{
    PlayerControlsModel model;
    const auto paused = countSignal(model, &PlayerControlsModel::isPausedChanged);
    const auto style = countSignal(model, &PlayerControlsModel::styleChanged);
    const auto hasShow = countSignal(model, &PlayerControlsModel::hasShowChanged);
    const auto visible = countSignal(model, &PlayerControlsModel::visibleChanged);
    const auto buttons = countSignal(model, &PlayerControlsModel::buttonsChanged);
    const auto expectCounts = [&](int p, int s, int h, int v, int b, const char *step) {
        EXPECT_EQ(*paused, p) << step;
        EXPECT_EQ(*style, s) << step;
        EXPECT_EQ(*hasShow, h) << step;
        EXPECT_EQ(*visible, v) << step;
        EXPECT_EQ(*buttons, b) << step;
    };

    model.setPaused(false);
    model.setStyle(PlayerStyle::photoWall);
    model.setHasShow(false);
    model.setVisible(false);
    expectCounts(0, 0, 0, 0, 0, "defaults again");

    model.setPaused(true);
    expectCounts(1, 0, 0, 0, 1, "pause");
    EXPECT_EQ(model.buttons().at(1).symbol, "play.fill");
    EXPECT_EQ(model.buttons().at(1).label, "Play");
    model.setPaused(true);
    expectCounts(1, 0, 0, 0, 1, "pause again");
    model.setPaused(false);
    expectCounts(2, 0, 0, 0, 2, "resume");
    EXPECT_EQ(model.buttons().at(1).symbol, "pause.fill");
    EXPECT_EQ(model.buttons().at(1).label, "Pause");

    model.setStyle(PlayerStyle::classic);
    expectCounts(2, 1, 0, 0, 3, "classic");
    EXPECT_TRUE(model.buttons().at(3).selected);
    EXPECT_FALSE(model.buttons().at(4).selected);
    model.setStyleRaw("classic");
    expectCounts(2, 1, 0, 0, 3, "classic again by raw value");
    model.setStyleRaw("Memory Table");
    expectCounts(2, 1, 0, 0, 3, "unknown raw value");
    EXPECT_EQ(model.style(), PlayerStyle::classic);
    model.setStyleRaw("memory-table");
    expectCounts(2, 2, 0, 0, 4, "memory table by raw value");
    EXPECT_EQ(model.style(), PlayerStyle::memoryTable);
    EXPECT_EQ(model.styleRaw(), "memory-table");

    model.setHasShow(true);
    model.setHasShow(true);
    expectCounts(2, 2, 1, 0, 4, "has show");
    model.setVisible(true);
    model.setVisible(true);
    model.setVisible(false);
    expectCounts(2, 2, 1, 2, 4, "visible and back");
}

TEST(PlayerControlsModel, PublishesEachMemberAsANotifyingProperty)
{
    PlayerControlsModel model;
    const QMetaObject *meta = model.metaObject();
    for (const char *name : {"isPaused", "style", "hasShow", "visible", "buttons"}) {
        const int index = meta->indexOfProperty(name);
        ASSERT_GE(index, 0) << name;
        EXPECT_TRUE(meta->property(index).hasNotifySignal()) << name;
    }
    for (const char *name : {"isPaused", "style", "hasShow", "visible"})
        EXPECT_TRUE(meta->property(meta->indexOfProperty(name)).isWritable()) << name;

    EXPECT_TRUE(model.setProperty("style", QStringLiteral("classic")));
    EXPECT_EQ(model.style(), PlayerStyle::classic);
    EXPECT_EQ(model.property("style").toString(), "classic");
    EXPECT_TRUE(model.setProperty("isPaused", true));
    EXPECT_TRUE(model.isPaused());
}

// ---- visibility rule ----

TEST(ControlsVisibility, RecentMovementOrTheStripKeepsThePanelUp)
{
    struct Row {
        std::optional<double> lastMovement;
        bool onStrip;
        double now;
        bool expected;
    };
    const std::vector<Row> rows {
        {std::nullopt, false, 0.0, false},
        {std::nullopt, false, 1000.0, false},
        {std::nullopt, true, 1000.0, true},
        {10.0, false, 10.0, true},
        {10.0, false, 12.999, true},
        {10.0, false, 13.0, false},
        {10.0, false, 13.001, false},
        {10.0, false, 500.0, false},
        {10.0, true, 500.0, true},
    };
    for (const Row &row : rows) {
        const ControlsVisibility visibility {row.lastMovement, row.onStrip};
        EXPECT_EQ(visibility.wantsVisible(row.now), row.expected)
            << row.lastMovement.value_or(-1) << " " << row.onStrip << " " << row.now;
    }
}

// ---- controller ----

class PlayerControlsController : public ::testing::Test {
protected:
    using Controller = sorvane::PlayerControlsController;

    void SetUp() override
    {
        visibleChanges = countSignal(model, &PlayerControlsModel::visibleChanged);
        QObject::connect(&model, &PlayerControlsModel::visibleChanged, &model,
            [this] { changeTimes.push_back(time.monotonicSeconds()); });
    }

    std::unique_ptr<Controller> start()
    {
        return std::make_unique<Controller>(
            time, time, [this] { return pointer; }, model);
    }

    test::FakeTime time;
    PlayerControlsModel model;
    QPointF pointer {700.0, 400.0};
    std::shared_ptr<int> visibleChanges;
    std::vector<double> changeTimes;
};

TEST_F(PlayerControlsController, APointerThatNeverMovesLeavesThePanelHidden)
{
    const auto controller = start();
    time.advance(120.0);
    EXPECT_FALSE(model.isVisible());
    EXPECT_FALSE(controller->isShown());
    EXPECT_EQ(*visibleChanges, 0);
    EXPECT_FALSE(controller->visibility().lastMovement.has_value());
}

TEST_F(PlayerControlsController, APointerParkedOnTheStripDoesNotSummonThePanel)
{
    pointer = QPointF(960.0, 990.0);
    const auto controller = start();
    controller->setStripRect(Controller::panelRect(QRectF(0, 0, 1920, 1080), QSizeF(600, 80)));
    ASSERT_TRUE(controller->stripRect().contains(pointer));
    time.advance(60.0);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 0);
}

TEST_F(PlayerControlsController, AOnePointMoveShowsWithinOneTickAndHidesThreeSecondsLater)
{
    const auto controller = start();
    time.advance(1.05);
    pointer.rx() += 1.0;
    time.advance(Controller::tickSeconds);
    ASSERT_TRUE(model.isVisible());
    EXPECT_TRUE(controller->isShown());
    ASSERT_TRUE(controller->visibility().lastMovement.has_value());
    const double movedAt = *controller->visibility().lastMovement;
    EXPECT_NEAR(movedAt, 1.1, 1e-9); // the first tick after the move

    time.advance(movedAt + 2.9 - time.monotonicSeconds());
    EXPECT_TRUE(model.isVisible());
    time.advance(movedAt + 3.15 - time.monotonicSeconds());
    EXPECT_FALSE(model.isVisible());
    EXPECT_FALSE(controller->isShown());

    ASSERT_EQ(changeTimes.size(), 2u);
    // Hidden by the first tick at which three seconds have passed.
    EXPECT_GE(changeTimes[1] - movedAt, 3.0 - 1e-9);
    EXPECT_LE(changeTimes[1] - movedAt, 3.0 + Controller::tickSeconds + 1e-9);

    time.advance(30.0);
    EXPECT_EQ(*visibleChanges, 2);
}

TEST_F(PlayerControlsController, AReportedMoveCountsFromItsOwnInstant)
{
    const auto controller = start();
    time.advance(2.05);
    controller->pointerMoved(pointer + QPointF(0.0, 1.0));
    EXPECT_TRUE(model.isVisible()); // at once, not at the next tick
    EXPECT_EQ(controller->lastPointer(), pointer + QPointF(0.0, 1.0));
    pointer += QPointF(0.0, 1.0); // the poll now reads the same place

    time.advance(2.9);
    EXPECT_TRUE(model.isVisible());
    time.advance(0.2);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 2);
}

TEST_F(PlayerControlsController, AReportedPositionThatIsNotAMoveChangesNothing)
{
    const auto controller = start();
    time.advance(1.0);
    controller->pointerMoved(pointer);
    time.advance(10.0);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 0);
}

TEST_F(PlayerControlsController, KeepsMovingKeepsItUpWithOneNotification)
{
    const auto controller = start();
    for (int i = 0; i < 20; ++i) {
        pointer.ry() += 5.0;
        time.advance(1.0);
        EXPECT_TRUE(model.isVisible()) << i;
    }
    EXPECT_EQ(*visibleChanges, 1);
    time.advance(3.2);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 2);
}

TEST_F(PlayerControlsController, ThePointerRestingOnTheStripKeepsItShown)
{
    const auto controller = start();
    controller->setStripRect(Controller::panelRect(QRectF(0, 0, 1920, 1080), QSizeF(600, 80)));
    time.advance(1.0);
    pointer = QPointF(960.0, 990.0); // onto the strip
    time.advance(30.0);
    EXPECT_TRUE(model.isVisible());
    EXPECT_TRUE(controller->visibility().pointerOnStrip);
    EXPECT_EQ(*visibleChanges, 1);

    pointer = QPointF(960.0, 500.0); // off it again: a movement, so still up for a while
    time.advance(2.9);
    EXPECT_TRUE(model.isVisible());
    EXPECT_FALSE(controller->visibility().pointerOnStrip);
    time.advance(0.35);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 2);
}

TEST_F(PlayerControlsController, AStripPlacedUnderTheRestingPointerHoldsTheShownPanel)
{
    const auto controller = start();
    time.advance(0.5);
    pointer = QPointF(2500.0, 950.0);
    time.advance(1.0);
    ASSERT_TRUE(model.isVisible());
    controller->setStripRect(QRectF(2200.0, 900.0, 700.0, 100.0));
    time.advance(20.0);
    EXPECT_TRUE(model.isVisible());

    controller->setStripRect(QRectF()); // panel moved away from the pointer
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 2);
}

TEST_F(PlayerControlsController, StartsHiddenEvenIfTheModelSaidOtherwise)
{
    model.setVisible(true);
    *visibleChanges = 0;
    const auto controller = start();
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 1);
}

TEST_F(PlayerControlsController, TicksEveryTenthOfASecondUntilDestroyed)
{
    int reads = 0;
    auto controller = std::make_unique<Controller>(
        time, time,
        [&] {
            ++reads;
            return pointer;
        },
        model);
    EXPECT_EQ(reads, 1); // the reference reading
    EXPECT_EQ(time.pendingTimers(), 1u);
    EXPECT_NEAR(time.nextDueIn(), 0.1, 1e-12);
    time.advance(1.05);
    EXPECT_EQ(reads, 11);

    controller.reset();
    EXPECT_EQ(time.pendingTimers(), 0u);
    time.advance(5.0);
    EXPECT_EQ(reads, 11);
}

TEST(PlayerControlsPlacement, PanelIsCentredAndStandsAboveTheBottomEdge)
{
    struct Row {
        QRectF screen;
        QSizeF panel;
        QRectF expected;
    };
    const std::vector<Row> rows {
        {QRectF(0, 0, 1920, 1080), QSizeF(640, 88), QRectF(640, 944, 640, 88)},
        {QRectF(1920, 0, 1920, 1080), QSizeF(640, 88), QRectF(2560, 944, 640, 88)},
        {QRectF(1920, 0, 1920, 1080), QSizeF(501, 75), QRectF(2629.5, 957, 501, 75)},
        {QRectF(-1280, 360, 1280, 720), QSizeF(400, 60), QRectF(-840, 972, 400, 60)},
    };
    for (const Row &row : rows) {
        const QRectF rect = sorvane::PlayerControlsController::panelRect(row.screen, row.panel);
        EXPECT_DOUBLE_EQ(rect.x(), row.expected.x());
        EXPECT_DOUBLE_EQ(rect.y(), row.expected.y());
        EXPECT_DOUBLE_EQ(rect.width(), row.expected.width());
        EXPECT_DOUBLE_EQ(rect.height(), row.expected.height());
        EXPECT_DOUBLE_EQ(row.screen.bottom() - rect.bottom(), 48.0);
    }
}

} // namespace
} // namespace sorvane
