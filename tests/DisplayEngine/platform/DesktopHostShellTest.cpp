// The desktop host: trash only after the application's confirmation, into a private
// freedesktop trash; reduce motion from the desktop's switch, else the preference.
#include "platform/DesktopHostShell.h"
#include "platform/GnomeAnimationSetting.h"

#include "media/ImageItem.h"
#include "slideshow/InMemoryPreferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

using namespace sorvane;
using Outcome = HostShell::TrashOutcome;

namespace {

// Points the user's home and data folders into a temporary folder while it lives, so the
// trash lands there (on the same file system as the files, as the desktop's own would).
class PrivateHome {
public:
    PrivateHome() : m_home(qgetenv("HOME")), m_data(qgetenv("XDG_DATA_HOME"))
    {
        qputenv("HOME", m_dir.path().toUtf8());
        qputenv("XDG_DATA_HOME", m_dir.filePath("data").toUtf8());
    }
    ~PrivateHome()
    {
        qputenv("HOME", m_home);
        m_data.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", m_data);
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    QByteArray m_home;
    QByteArray m_data;
};

struct Done {
    int calls = 0;
    Outcome outcome = Outcome::failed;
    QString message;
    HostShell::TrashDone callback()
    {
        return [this](Outcome o, const QString &m) {
            ++calls;
            outcome = o;
            message = m;
        };
    }
};

TEST(DesktopHostShell, TrashesOnlyWhatTheUserConfirms)
{
    enum class Answer { yes, no, never };
    const struct {
        const char *name;
        Answer answer;
        bool fileExists;
        bool local;
        Outcome outcome;
        const char *messagePart;
    } rows[] = {
        {"confirmed", Answer::yes, true, true, Outcome::moved, ""},
        {"refused", Answer::no, true, true, Outcome::cancelled, ""},
        {"confirmed, but the file is gone", Answer::yes, false, true, Outcome::failed, "no longer exists"},
        {"not a local file", Answer::yes, true, false, Outcome::failed, "not a file on this computer"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        PrivateHome home;
        const QString photo = home.path("photos/beach.jpg");
        QDir().mkpath(home.path("photos"));
        if (row.fileExists) {
            QFile file(photo);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
        InMemoryPreferences preferences;
        QStringList asked;
        DesktopHostShell shell(preferences,
            [&](const ImageItem &item, DesktopHostShell::Answer answer) {
                asked.append(item.url().fileName());
                answer(row.answer == Answer::yes);
            },
            {});
        const QUrl url = row.local ? QUrl::fromLocalFile(photo) : QUrl("https://example.com/beach.jpg");
        Done done;
        shell.moveToTrash(ImageItem(url), done.callback());
        EXPECT_EQ(asked, QStringList {"beach.jpg"});
        EXPECT_EQ(done.calls, 1);
        EXPECT_EQ(done.outcome, row.outcome);
        EXPECT_TRUE(done.message.contains(row.messagePart)) << done.message.toStdString();
        const bool trashed = QFile::exists(home.path("data/Trash/files/beach.jpg"));
        EXPECT_EQ(trashed, row.outcome == Outcome::moved);
        EXPECT_EQ(QFile::exists(home.path("data/Trash/info/beach.jpg.trashinfo")), trashed);
        EXPECT_EQ(QFile::exists(photo), row.fileExists && !trashed);
    }
}

TEST(DesktopHostShell, ALateAnswerCountsOnceAndNotAfterTheShellIsGone)
{
    InMemoryPreferences preferences;
    std::vector<DesktopHostShell::Answer> pending;
    const auto keep = [&](const ImageItem &, DesktopHostShell::Answer answer) { pending.push_back(answer); };
    Done done;
    auto shell = std::make_unique<DesktopHostShell>(preferences, keep, DesktopHostShell::ReadAnimationsEnabled {});
    shell->moveToTrash(ImageItem(QUrl::fromLocalFile("/nowhere/a.jpg")), done.callback());
    EXPECT_EQ(done.calls, 0) << "nothing happens before the user answers";
    pending.at(0)(false);
    pending.at(0)(true);
    EXPECT_EQ(done.calls, 1);
    EXPECT_EQ(done.outcome, Outcome::cancelled);

    shell->moveToTrash(ImageItem(QUrl::fromLocalFile("/nowhere/b.jpg")), done.callback());
    shell.reset();
    pending.at(1)(true);
    EXPECT_EQ(done.calls, 1);

    DesktopHostShell silent(preferences, {}, {});
    silent.moveToTrash(ImageItem(QUrl::fromLocalFile("/nowhere/c.jpg")), done.callback());
    EXPECT_EQ(done.calls, 2);
    EXPECT_EQ(done.outcome, Outcome::failed);
}

TEST(DesktopHostShell, ReducedMotionComesFromTheDesktopElseThePreference)
{
    const struct {
        std::optional<bool> animationsEnabled;
        std::optional<bool> preference;
        bool reduced;
    } rows[] = {
        {true, true, false},
        {false, std::nullopt, true},
        {false, false, true},
        {std::nullopt, true, true},
        {std::nullopt, false, false},
        {std::nullopt, std::nullopt, false},
    };
    for (const auto &row : rows) {
        InMemoryPreferences preferences;
        if (row.preference)
            preferences.setValue(DesktopHostShell::reduceMotionKey, *row.preference);
        int reads = 0;
        DesktopHostShell::AnimationsAnswer answer;
        DesktopHostShell shell(preferences, {}, [&](DesktopHostShell::AnimationsAnswer later) {
            ++reads;
            answer = std::move(later);
        });
        // Until the desktop answers, the preference speaks.
        EXPECT_EQ(shell.prefersReducedMotion(), row.preference.value_or(false));
        answer(row.animationsEnabled);
        EXPECT_EQ(shell.prefersReducedMotion(), row.reduced);
        EXPECT_EQ(shell.prefersReducedMotion(), row.reduced);
        EXPECT_EQ(reads, 1) << "the desktop is asked once";
    }
}

TEST(GnomeAnimationSetting, ReadsOnlyAPlainAnswer)
{
    const struct {
        QByteArray output;
        std::optional<bool> value;
    } rows[] = {
        {"true\n", true},
        {"false\n", false},
        {"  false  ", false},
        {"", std::nullopt},
        {"No such key “enable-animations”\n", std::nullopt},
        {"truefalse", std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(GnomeAnimationSetting::parse(row.output), row.value) << row.output.toStdString();
}

} // namespace
