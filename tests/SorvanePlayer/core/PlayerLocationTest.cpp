#include "core/PlayerLocation.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

TEST(PlayerLocationTest, TranslocatedOnlyWithAWholeAppTranslocationComponent)
{
    const struct {
        const char *path;
        bool translocated;
    } table[] = {
        {"/private/var/folders/x1/T/AppTranslocation/3F2A-91B0/d/Show/player", true},
        {"AppTranslocation/d/player", true},
        {"/Volumes/Show/player", false},
        {"/Volumes/MyAppTranslocation/player", false},
        {"/Volumes/apptranslocation/player", false},
        {"", false},
    };
    for (const auto &row : table)
        EXPECT_EQ(PlayerLocation::isTranslocated(QString::fromUtf8(row.path)), row.translocated) << row.path;
}

TEST(PlayerLocationTest, ApplicationFolderPrefersTheFileAnAppImageNames)
{
    const QString translocated = QStringLiteral("/private/var/folders/x1/T/AppTranslocation/3F2A/d/Show/player");
    const struct {
        const char *name;
        QString executableFolder;
        QString appImage;
        QString expected;
    } table[] = {
        {"plain executable", QStringLiteral("/media/usb/Show/player"), QString(),
            QStringLiteral("/media/usb/Show/player")},
        {"AppImage mount", QStringLiteral("/tmp/.mount_SorvaX1/usr/bin"),
            QStringLiteral("/media/usb/Show/player/SorvanePlayer.AppImage"), QStringLiteral("/media/usb/Show/player")},
        {"relative AppImage", QStringLiteral("/tmp/.mount_SorvaX1/usr/bin"),
            QStringLiteral("Show/player/SorvanePlayer.AppImage"), QDir::current().absoluteFilePath("Show/player")},
        {"blank APPIMAGE", QStringLiteral("/tmp/.mount_SorvaX1/usr/bin"), QStringLiteral(" \t "),
            QStringLiteral("/tmp/.mount_SorvaX1/usr/bin")},
        {"translocated, nothing better known", translocated, QString(), translocated},
        {"translocated AppImage", translocated, QStringLiteral("/media/usb/Show/player/SorvanePlayer.AppImage"),
            QStringLiteral("/media/usb/Show/player")},
    };
    for (const auto &row : table)
        EXPECT_EQ(PlayerLocation::applicationFolder(row.executableFolder, row.appImage), row.expected) << row.name;
}

// Bundles laid out in a temporary folder, which is also the current folder while a test runs.
class ChooseBundleTest : public ::testing::Test {
protected:
    QTemporaryDir tmp;
    QString previousCurrent = QDir::currentPath();

    void SetUp() override
    {
        ASSERT_TRUE(tmp.isValid());
        makeBundle(QStringLiteral("Show"));
        ASSERT_TRUE(QDir(tmp.path()).mkpath(QStringLiteral("Show/player")));
        ASSERT_TRUE(QDir(tmp.path()).mkpath(QStringLiteral("Empty/player")));
        // A folder named like the bundle file, and bundles that a blank root resolved
        // against the current folder would find.
        ASSERT_TRUE(QDir(tmp.path()).mkpath(QStringLiteral("Odd/bundle.json")));
        makeBundle(QStringLiteral("   "));
        makeBundle(QStringLiteral("."));
        ASSERT_TRUE(QDir::setCurrent(tmp.path()));
    }

    void TearDown() override { QDir::setCurrent(previousCurrent); }

    void makeBundle(const QString &folder)
    {
        ASSERT_TRUE(QDir(tmp.path()).mkpath(folder));
        QFile file(tmp.path() + u'/' + folder + QStringLiteral("/bundle.json"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{}");
    }

    // "@" stands for the temporary folder.
    QString at(const char *text) const { return QString::fromUtf8(text).replace(u'@', tmp.path()); }
};

TEST_F(ChooseBundleTest, RootFromArgumentOrParentOfApplicationFolder)
{
    const struct {
        const char *applicationFolder;
        std::vector<const char *> arguments;
        const char *root; // nullptr: holding
        const char *logLine;
    } table[] = {
        // Beside the player.
        {"@/Show/player", {}, "@/Show", "Bundle root @/Show"},
        {"@/Show/player/", {}, "@/Show", "Bundle root @/Show"},
        {"@/Show/./player", {}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {}, nullptr, "No bundle beside @/Empty/player; holding"},
        {"@/Missing/player", {}, nullptr, "No bundle beside @/Missing/player; holding"},
        {"   /player", {}, nullptr, "No bundle beside    /player; holding"},
        {"", {}, nullptr, "No bundle beside ; holding"},
        {"player", {}, nullptr, "No bundle beside player; holding"},
        // Named on the command line: a folder or its bundle.json, absolute or relative.
        {"@/Empty/player", {"@/Show"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"@/Show/bundle.json"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"Show"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"Show/bundle.json"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"./Empty/../Show/"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"  Show \t"}, "@/Show", "Bundle root @/Show"},
        {"@/Empty/player", {"@/Show", "@/Empty"}, "@/Show", "Bundle root @/Show"},
        // An argument that finds nothing holds, even with a bundle beside the player.
        {"@/Show/player", {"@/Empty"}, nullptr, "No bundle beside @/Empty; holding"},
        {"@/Show/player", {"@/Missing"}, nullptr, "No bundle beside @/Missing; holding"},
        {"@/Show/player", {"@/Missing/bundle.json"}, nullptr, "No bundle beside @/Missing/bundle.json; holding"},
        {"@/Show/player", {"@/Show/player"}, nullptr, "No bundle beside @/Show/player; holding"},
        {"@/Show/player", {"@/Odd"}, nullptr, "No bundle beside @/Odd; holding"},
        {"@/Show/player", {"@/Odd/bundle.json"}, nullptr, "No bundle beside @/Odd/bundle.json; holding"},
        {"@/Show/player", {"   "}, nullptr, "No bundle beside    ; holding"},
        {"@/Show/player", {""}, nullptr, "No bundle beside ; holding"},
    };
    for (const auto &row : table) {
        QStringList arguments;
        for (const char *argument : row.arguments)
            arguments << at(argument);
        const QString context = at(row.applicationFolder) + QStringLiteral(" | ") + arguments.join(u'|');

        const PlayerBundleChoice choice = PlayerLocation::chooseBundle(at(row.applicationFolder), arguments);

        EXPECT_EQ(choice.hold, row.root == nullptr) << qPrintable(context);
        EXPECT_EQ(choice.bundleRoot, row.root ? at(row.root) : QString()) << qPrintable(context);
        EXPECT_EQ(choice.logLine, at(row.logLine)) << qPrintable(context);
    }
}

} // namespace
