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
namespace {

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

TEST(PlayerControlsModel, ButtonsInPanelOrderFollowPauseAndStyle)
{
    const struct {
        bool paused;
        PlayerStyle style;
        const char *playSymbol;
        const char *playLabel;
        bool classicSelected, photoWallSelected, memoryTableSelected;
    } cases[] = {
        {false, PlayerStyle::photoWall, "pause.fill", "Pause", false, true, false},
        {true, PlayerStyle::memoryTable, "play.fill", "Play", false, false, true},
        {false, PlayerStyle::classic, "pause.fill", "Pause", true, false, false},
    };
    for (const auto &row : cases) {
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

// The panel's timing on an injected clock, with the pointer where each step puts it.
TEST(PlayerControlsController, ShowsOnAMoveHidesAfterThreeSecondsAndStaysUpWhileResting)
{
    using Controller = sorvane::PlayerControlsController;
    test::FakeTime time;
    PlayerControlsModel model;
    model.setVisible(true); // a stale state from before: the controller starts hidden
    QPointF pointer(960.0, 990.0);
    std::vector<double> changes;
    QObject::connect(
        &model, &PlayerControlsModel::visibleChanged, &model, [&] { changes.push_back(time.monotonicSeconds()); });
    Controller controller(
        time, time, [&] { return pointer; }, model);
    EXPECT_FALSE(model.isVisible());
    controller.setStripRect(Controller::panelRect(QRectF(0, 0, 1920, 1080), QSizeF(600, 80)));
    ASSERT_TRUE(controller.stripRect().contains(pointer));
    time.advance(60.0);
    EXPECT_EQ(changes.size(), 1u) << "a pointer parked on the strip does not summon the panel";

    pointer = QPointF(700.0, 400.0);
    time.advance(0.05);
    pointer.rx() += 1.0; // one point is a movement
    time.advance(Controller::tickSeconds);
    ASSERT_TRUE(model.isVisible());
    const double movedAt = changes.back();
    time.advance(2.9);
    EXPECT_TRUE(model.isVisible());
    time.advance(0.25);
    EXPECT_FALSE(model.isVisible());
    ASSERT_EQ(changes.size(), 3u);
    EXPECT_GE(changes[2] - movedAt, 3.0 - 1e-9);
    EXPECT_LE(changes[2] - movedAt, 3.0 + Controller::tickSeconds + 1e-9);

    pointer.rx() += 5.0;
    time.advance(1.0);
    pointer = QPointF(960.0, 990.0); // onto the strip: kept up however long it rests
    time.advance(30.0);
    EXPECT_TRUE(model.isVisible());
    pointer = QPointF(960.0, 500.0); // off it again: a movement, so still up for a while
    time.advance(2.9);
    EXPECT_TRUE(model.isVisible());
    time.advance(0.35);
    EXPECT_FALSE(model.isVisible());
    EXPECT_EQ(changes.size(), 5u);
}

} // namespace
} // namespace sorvane
