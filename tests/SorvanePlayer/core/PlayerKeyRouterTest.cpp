#include "core/PlayerKeyRouter.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

TEST(PlayerKeyRouter, ThePlayersKeysAndTheChordsThatStopThem)
{
    constexpr quint64 command = KeyBinding::command, option = KeyBinding::option, shift = KeyBinding::shift;
    const QString left(QChar(0x2190));
    const struct {
        QString key;
        quint64 modifiers;
        quint32 scanCode;
        std::optional<PlayerAction> action;
    } rows[] = {
        {"escape", option | command, 0, PlayerAction::exit},
        {"q", command, 0, PlayerAction::exit},
        {"q", 0, 0, std::nullopt},
        {"q", KeyBinding::control, 0, std::nullopt},
        {" ", 0, 0, PlayerAction::togglePause},
        {" ", shift, 0, PlayerAction::togglePause},
        {" ", command, 0, std::nullopt},
        {left, shift, 0, PlayerAction::previous},
        {left, option, 0, std::nullopt},
        {"1", 0, 0, PlayerAction::stylePhotoWall},
        // The style keys count by where they sit: Shift+1 types '!', and the 1 key types '&' on French keyboards.
        {"!", shift, 10, PlayerAction::stylePhotoWall},
        {"&", 0, 10, PlayerAction::stylePhotoWall},
        {"1", command, 10, std::nullopt},
        {"!", shift, 0, std::nullopt},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(PlayerKeyRouter::actionFor(KeyBinding {row.key, row.modifiers}, row.scanCode), row.action)
            << row.key.toStdString() << " " << row.modifiers << " " << row.scanCode;
    }
}

} // namespace
} // namespace sorvane
