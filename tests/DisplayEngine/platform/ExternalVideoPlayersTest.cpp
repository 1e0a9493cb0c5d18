// Video players found on a made-up search path, and opening a file in one.
#include "platform/ExternalVideoPlayers.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

void makeProgram(const QString &path, bool executable = true)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n");
    file.close();
    const auto plain = QFile::ReadOwner | QFile::WriteOwner;
    ASSERT_TRUE(file.setPermissions(executable ? plain | QFile::ExeOwner : plain));
}

TEST(ExternalVideoPlayers, OffersOnlyThePlayersOnTheSearchPath)
{
    QTemporaryDir tmp;
    const QString bin = tmp.filePath("bin"), local = tmp.filePath("local");
    QDir().mkpath(bin);
    QDir().mkpath(local);
    makeProgram(bin + "/celluloid");
    makeProgram(local + "/vlc");
    makeProgram(bin + "/mpv", false); // not runnable: not installed
    makeProgram(local + "/xdg-open");
    makeProgram(bin + "/xdg-open"); // the first on the path wins
    const struct {
        const char *name;
        QString path;
        QStringList offered;
    } rows[] = {
        {"both folders", bin + ':' + local,
            {"vlc " + local + "/vlc", "celluloid " + bin + "/celluloid", "default " + bin + "/xdg-open"}},
        {"one folder", local, {"vlc " + local + "/vlc", "default " + local + "/xdg-open"}},
        {"empty path", "", {}},
        {"a folder that is not there", tmp.filePath("none"), {}},
    };
    for (const auto &row : rows) {
        QStringList offered;
        for (const ExternalVideoPlayer &player : ExternalVideoPlayers(row.path).installed())
            offered.append(player.id + ' ' + player.program);
        EXPECT_EQ(offered.join(", ").toStdString(), row.offered.join(", ").toStdString()) << row.name;
    }
}

TEST(ExternalVideoPlayers, OpensAFileOrSaysWhyNot)
{
    QTemporaryDir tmp;
    const QString program = tmp.filePath("myplayer"), video = tmp.filePath("clip.mp4");
    makeProgram(program);
    makeProgram(tmp.filePath("plain"), false);
    QFile(video).open(QIODevice::WriteOnly);

    const auto chosen = ExternalVideoPlayers::chosen(program);
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(*chosen, (ExternalVideoPlayer {"chosen", "myplayer", program}));
    EXPECT_FALSE(ExternalVideoPlayers::chosen(tmp.filePath("plain")));
    EXPECT_FALSE(ExternalVideoPlayers::chosen(tmp.path()));
    EXPECT_FALSE(ExternalVideoPlayers::chosen("myplayer"));

    const struct {
        const char *name;
        ExternalVideoPlayer player;
        QString file;
        bool starts;
        std::optional<QString> failure;
        bool launched;
    } rows[] = {
        {"started", *chosen, video, true, std::nullopt, true},
        {"could not start", *chosen, video, false, "myplayer could not be started.", true},
        {"video gone", *chosen, tmp.filePath("gone.mp4"), true,
            "“gone.mp4” cannot be opened because it no longer exists.", false},
        {"player gone", {"vlc", "VLC", tmp.filePath("vlc")}, video, true, "VLC is no longer installed.", false},
    };
    for (const auto &row : rows) {
        QStringList launches;
        const ExternalVideoPlayers players("", [&](const QString &p, const QStringList &arguments) {
            launches.append(p + ' ' + arguments.join(' '));
            return row.starts;
        });
        EXPECT_EQ(players.open(row.player, row.file), row.failure) << row.name;
        EXPECT_EQ(launches, row.launched ? QStringList {program + ' ' + video} : QStringList {}) << row.name;
    }
}

} // namespace
