#include "platform/DbusScreenSaverInhibitor.h"

#include "support/LogCapture.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtCore/qtestsupport_core.h>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace sorvane;

namespace {

// Replies from the bus reach the inhibitor through the event loop of a QCoreApplication.
class QtApplication : public ::testing::Environment {
public:
    void SetUp() override
    {
        if (!QCoreApplication::instance())
            m_app = std::make_unique<QCoreApplication>(m_argc, m_argv);
    }
    void TearDown() override { m_app.reset(); }

private:
    int m_argc = 1;
    char m_name[32] = "player_platform_tests";
    char *m_argv[2] = {m_name, nullptr};
    std::unique_ptr<QCoreApplication> m_app;
};

[[maybe_unused]] ::testing::Environment *const qtApplication = ::testing::AddGlobalTestEnvironment(new QtApplication);

constexpr int startTimeoutMs = 10000;
constexpr int replyTimeoutMs = 5000;

// Reads a child's standard output until a whole line has come, or gives up.
QString firstLine(QProcess &process)
{
    QElapsedTimer timer;
    timer.start();
    if (!process.waitForStarted(startTimeoutMs))
        return {};
    while (!process.canReadLine() && process.state() == QProcess::Running && timer.elapsed() < startTimeoutMs)
        process.waitForReadyRead(startTimeoutMs - int(timer.elapsed()));
    return QString::fromUtf8(process.readLine()).trimmed();
}

void stop(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.kill();
    process.waitForFinished(startTimeoutMs);
}

// A bus of our own, with no activatable services: what is on it is what the test put there.
class DbusScreenSaverInhibitorTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QProcess daemon;
    QProcess screenSaver;
    QString address;
    QString recordPath;
    std::vector<QString> connectionNames;
    sorvane::test::LogCapture logs {QStringLiteral("sorvane.player.info=true")};

    void SetUp() override
    {
        ASSERT_TRUE(tmp.isValid());
        const QString daemonProgram = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemonProgram.isEmpty())
            GTEST_SKIP() << "dbus-daemon is not installed";

        const QString config = tmp.path() + QStringLiteral("/bus.conf");
        QFile file(config);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QStringLiteral(R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)")
                       .arg(tmp.path())
                       .toUtf8());
        file.close();

        daemon.start(daemonProgram,
            {QStringLiteral("--config-file=") + config, QStringLiteral("--print-address"), QStringLiteral("--nofork")});
        address = firstLine(daemon);
        ASSERT_FALSE(address.isEmpty()) << qPrintable(QString::fromUtf8(daemon.readAllStandardError()));
        recordPath = tmp.path() + QStringLiteral("/calls.txt");
    }

    void TearDown() override
    {
        for (const QString &name : connectionNames)
            QDBusConnection::disconnectFromBus(name);
        stop(screenSaver);
        stop(daemon);
    }

    void startScreenSaver()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
        screenSaver.setProcessEnvironment(environment);
        screenSaver.start(QStringLiteral(SORVANE_TEST_SCREENSAVER), {recordPath});
        ASSERT_EQ(firstLine(screenSaver), QStringLiteral("ready"))
            << qPrintable(QString::fromUtf8(screenSaver.readAllStandardError()));
    }

    QDBusConnection connect(const QString &busAddress)
    {
        connectionNames.push_back(QStringLiteral("inhibitor-test-%1").arg(connectionNames.size()));
        return QDBusConnection::connectToBus(busAddress, connectionNames.back());
    }

    QStringList recorded() const
    {
        QFile file(recordPath);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    // Only the player's own lines: Qt's D-Bus module may have its say too.
    std::vector<std::string> playerLogs()
    {
        std::vector<std::string> lines;
        for (std::string &line : logs.take()) {
            if (line.rfind("sorvane.player ", 0) == 0)
                lines.push_back(std::move(line));
        }
        return lines;
    }
};

// The cookies the service handed out, in order, from its Inhibit lines.
QStringList cookiesIn(const QStringList &lines)
{
    QStringList cookies;
    for (const QString &line : lines) {
        if (line.startsWith(QStringLiteral("Inhibit ")))
            cookies << line.section(u'\t', -1);
    }
    return cookies;
}

// "#1" stands for the first cookie handed out, "#2" for the second.
QString withCookies(QString text, const QStringList &cookies)
{
    for (int i = 0; i < cookies.size(); ++i)
        text.replace(QStringLiteral("#%1").arg(i + 1), cookies.at(i));
    return text;
}

TEST_F(DbusScreenSaverInhibitorTest, EveryInhibitIsReleasedWithItsOwnCookie)
{
    ASSERT_NO_FATAL_FAILURE(startScreenSaver());

    enum class Step { inhibit, release, awaitReply };
    using enum Step;
    const QString inhibitLine = QStringLiteral("Inhibit SorvanePlayer\tSlidora is showing photos\t");
    const std::string kept = "sorvane.player info: Display kept awake (cookie ";
    const std::string released = "sorvane.player info: Display sleep released";
    const struct {
        const char *name;
        std::vector<Step> steps;
        // The cookie held after the steps, "" for none; the inhibitor is destroyed afterwards.
        QString held;
        QStringList calls;
        std::vector<std::string> logLines;
    } table[] = {
        {"inhibit then release", {inhibit, awaitReply, release}, "", {inhibitLine + "#1", "UnInhibit #1"},
            {kept + "#1)", released}},
        {"release before the reply", {inhibit, release, awaitReply}, "", {inhibitLine + "#1", "UnInhibit #1"},
            {kept + "#1)", released}},
        {"inhibit again before the reply", {inhibit, inhibit, awaitReply}, "#1", {inhibitLine + "#1", "UnInhibit #1"},
            {kept + "#1)", released}},
        {"release, then inhibit, before the reply", {inhibit, release, inhibit, awaitReply}, "#1",
            {inhibitLine + "#1", "UnInhibit #1"}, {kept + "#1)", released}},
        {"release without inhibit", {release}, "", {}, {}},
        {"inhibit after a release", {inhibit, awaitReply, release, inhibit, awaitReply}, "#2",
            {inhibitLine + "#1", "UnInhibit #1", inhibitLine + "#2", "UnInhibit #2"},
            {kept + "#1)", released, kept + "#2)", released}},
    };

    for (const auto &row : table) {
        const qsizetype callsBefore = recorded().size();
        playerLogs();
        std::optional<uint> heldCookie;
        {
            DbusScreenSaverInhibitor inhibitor(connect(address));
            for (const Step step : row.steps) {
                if (step == inhibit)
                    inhibitor.inhibit();
                else if (step == release)
                    inhibitor.release();
                else
                    ASSERT_TRUE(QTest::qWaitFor([&] { return !inhibitor.isPending(); }, replyTimeoutMs)) << row.name;
            }
            heldCookie = inhibitor.cookie();
            EXPECT_EQ(inhibitor.isHeld(), heldCookie.has_value()) << row.name;
        }

        const QStringList calls = recorded().mid(callsBefore);
        const QStringList cookies = cookiesIn(calls);
        EXPECT_EQ(cookies.size(), QSet<QString>(cookies.begin(), cookies.end()).size()) << row.name;

        QStringList expectedCalls;
        for (const QString &line : row.calls)
            expectedCalls << withCookies(line, cookies);
        EXPECT_EQ(calls, expectedCalls) << row.name;

        const QString expectedHeld = withCookies(row.held, cookies);
        EXPECT_EQ(heldCookie ? QString::number(*heldCookie) : QString(), expectedHeld) << row.name;

        std::vector<std::string> expectedLogs;
        for (const std::string &line : row.logLines)
            expectedLogs.push_back(withCookies(QString::fromStdString(line), cookies).toStdString());
        EXPECT_EQ(playerLogs(), expectedLogs) << row.name;
    }
}

TEST_F(DbusScreenSaverInhibitorTest, WithoutTheServiceTheShowGoesOnQuickly)
{
    const struct {
        const char *name;
        bool busRuns;
    } table[] = {
        {"bus without a screen saver", true},
        {"no bus at all", false},
    };
    const std::string failure = "sorvane.player warning: Display sleep could not be inhibited: ";

    for (const auto &row : table) {
        playerLogs();
        const QString busAddress
            = row.busRuns ? address : QStringLiteral("unix:path=") + tmp.path() + QStringLiteral("/no-bus");
        DbusScreenSaverInhibitor inhibitor(connect(busAddress));

        QElapsedTimer timer;
        timer.start();
        inhibitor.inhibit();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !inhibitor.isPending(); }, 1000)) << row.name;
        EXPECT_LT(timer.elapsed(), 1000) << row.name;
        EXPECT_FALSE(inhibitor.isHeld()) << row.name;
        EXPECT_EQ(inhibitor.cookie(), std::nullopt) << row.name;

        inhibitor.release();
        const std::vector<std::string> lines = playerLogs();
        ASSERT_EQ(lines.size(), 1u) << row.name;
        EXPECT_EQ(lines.front().rfind(failure, 0), 0u) << row.name << ": " << lines.front();
        EXPECT_GT(lines.front().size(), failure.size()) << row.name << ": the reason is missing";
    }
}

} // namespace
