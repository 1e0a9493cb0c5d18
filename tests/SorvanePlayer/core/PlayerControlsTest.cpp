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

TEST(PlayerControlsModel, EachButtonsNamedInvokableReachesItsHandler)
{
    // Buttons pressed before the handlers are set do nothing.
    PlayerControlsModel bare;
    for (const ControlButton &button : bare.buttons())
        bare.perform(button.action);
    bare.chooseStyle(QStringLiteral("classic"));
    EXPECT_FALSE(bare.isPaused());
    // QML sets the style by its raw value; a label is no raw value.
    bare.setStyleRaw(QStringLiteral("Memory Table"));
    EXPECT_EQ(bare.style(), PlayerStyle::photoWall);
    bare.setStyleRaw(QStringLiteral("memory-table"));
    EXPECT_EQ(bare.styleRaw(), QStringLiteral("memory-table"));

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

TEST_F(PlayerControlsController, StartsHiddenEvenIfTheModelSaidOtherwise)
{
    model.setVisible(true);
    *visibleChanges = 0;
    const auto controller = start();
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(*visibleChanges, 1);
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
        {QRectF(1920, 0, 1920, 1080), QSizeF(501, 75), QRectF(2629.5, 957, 501, 75)},
        {QRectF(-1280, 360, 1280, 720), QSizeF(400, 60), QRectF(-840, 972, 400, 60)},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(sorvane::PlayerControlsController::panelRect(row.screen, row.panel), row.expected);
    }
}

} // namespace
} // namespace sorvane
