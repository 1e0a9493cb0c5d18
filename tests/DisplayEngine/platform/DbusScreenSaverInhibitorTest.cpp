// The inhibitor against a real private dbus-daemon and a recording fake screen saver: every
// Inhibit is released with its own cookie, whatever order the calls and replies come in.
#include "platform/DbusScreenSaverInhibitor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtCore/qtestsupport_core.h>

#include <gtest/gtest.h>

#include <vector>

using namespace sorvane;

namespace {

const DbusScreenSaverInhibitor::Identity identity {
    QStringLiteral("SorvaneSlideshow"), QStringLiteral("A slideshow is playing")};

QString firstLine(QProcess &process)
{
    for (int tries = 0; tries < 100 && !process.canReadLine() && process.state() != QProcess::NotRunning; ++tries)
        process.waitForReadyRead(100);
    return QString::fromUtf8(process.readLine()).trimmed();
}

TEST(DbusScreenSaverInhibitor, EveryInhibitIsReleasedWithItsOwnCookie)
{
    int argc = 1;
    char name[] = "platform_tests";
    char *argv[] = {name, nullptr};
    QCoreApplication app(argc, argv); // replies arrive through its event loop
    const QString daemonProgram = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    if (daemonProgram.isEmpty())
        GTEST_SKIP() << "dbus-daemon is not installed";
    QTemporaryDir tmp;
    QFile config(tmp.filePath(QStringLiteral("bus.conf")));
    ASSERT_TRUE(config.open(QIODevice::WriteOnly));
    config.write(QStringLiteral("<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                                "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\"><busconfig>"
                                "<type>session</type><listen>unix:dir=%1</listen><auth>EXTERNAL</auth>"
                                "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/><allow "
                                "eavesdrop=\"true\"/><allow own=\"*\"/>"
                                "</policy></busconfig>")
                     .arg(tmp.path())
                     .toUtf8());
    config.close();
    QProcess daemon;
    daemon.start(daemonProgram, {"--config-file=" + config.fileName(), "--print-address", "--nofork"});
    const QString address = firstLine(daemon);
    ASSERT_FALSE(address.isEmpty());
    // Without a screen saver on the bus, or without a bus, the request fails at once and the show goes on.
    for (const QString &lonelyAddress : {address, "unix:path=" + tmp.filePath("no-bus")}) {
        DbusScreenSaverInhibitor lonely(identity, QDBusConnection::connectToBus(lonelyAddress, lonelyAddress));
        lonely.inhibit();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !lonely.isPending(); }, 1000)) << lonelyAddress.toStdString();
        EXPECT_FALSE(lonely.isHeld());
    }
    const QString recordPath = tmp.filePath(QStringLiteral("calls.txt"));
    QProcess screenSaver;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    screenSaver.setProcessEnvironment(environment);
    screenSaver.start(QStringLiteral(SORVANE_TEST_SCREENSAVER), {recordPath});
    ASSERT_EQ(firstLine(screenSaver), QStringLiteral("ready"));
    auto recorded = [&] {
        QFile file(recordPath);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                              : QStringList();
    };

    enum Step { inhibit, release, awaitReply };
    const struct {
        const char *name;
        std::vector<Step> steps;
        bool heldAtEnd;
        int inhibits; // each must be followed, before the next, by an UnInhibit with its cookie
    } table[] = {
        {"release before the reply", {inhibit, release, awaitReply}, false, 1},
        {"inhibit again before the reply", {inhibit, inhibit, awaitReply}, true, 1},
        {"release, then inhibit, before the reply", {inhibit, release, inhibit, awaitReply}, true, 1},
        {"release without inhibit", {release}, false, 0},
        {"inhibit after a release", {inhibit, awaitReply, release, inhibit, awaitReply}, true, 2},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(row.name);
        const qsizetype before = recorded().size();
        {
            DbusScreenSaverInhibitor inhibitor(identity, QDBusConnection::connectToBus(address, row.name));
            for (const Step step : row.steps) {
                if (step == inhibit)
                    inhibitor.inhibit();
                else if (step == release)
                    inhibitor.release();
                else
                    ASSERT_TRUE(QTest::qWaitFor([&] { return !inhibitor.isPending(); }, 5000));
            }
            EXPECT_EQ(inhibitor.isHeld(), row.heldAtEnd);
        } // destroying the inhibitor releases what it holds
        QDBusConnection::disconnectFromBus(row.name);
        const QStringList calls = recorded().mid(before);
        ASSERT_EQ(calls.size(), 2 * row.inhibits) << calls.join(u'\n').toStdString();
        QStringList cookies;
        for (int i = 0; i < row.inhibits; ++i) {
            const QString cookie = calls[2 * i].section(u'\t', -1);
            EXPECT_EQ(calls[2 * i], "Inhibit SorvaneSlideshow\tA slideshow is playing\t" + cookie);
            EXPECT_EQ(calls[2 * i + 1], "UnInhibit " + cookie);
            EXPECT_FALSE(cookies.contains(cookie));
            cookies << cookie;
        }
    }

    screenSaver.kill();
    daemon.kill();
    screenSaver.waitForFinished();
    daemon.waitForFinished();
}

} // namespace
