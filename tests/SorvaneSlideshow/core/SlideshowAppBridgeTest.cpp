#include "core/SlideshowAppBridge.h"

#include "../../DisplayEngine/slideshow/SlideshowTestHost.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

const ExternalVideoPlayer vlc {QStringLiteral("vlc"), QStringLiteral("VLC"), QStringLiteral("/usr/bin/vlc")};

struct Opened {
    QString player;
    QString file;
};

TEST(SlideshowAppBridge, aTrashQuestionIsAnsweredOnceAndANewOneAnswersTheOldNo)
{
    SlideshowAppBridge bridge({}, {});
    QStringList answers;
    const auto answerAs = [&answers](QString name) {
        return [&answers, name](bool confirmed) { answers << name + (confirmed ? ":yes" : ":no"); };
    };

    bridge.askTrash(QStringLiteral("w1"), QStringLiteral("a.jpg"), answerAs(QStringLiteral("a")));
    EXPECT_EQ(bridge.trashWindowId(), QStringLiteral("w1"));
    EXPECT_EQ(bridge.trashFileName(), QStringLiteral("a.jpg"));
    // A second question (another window's key) closes the first as cancelled.
    bridge.askTrash(QStringLiteral("w2"), QStringLiteral("b.jpg"), answerAs(QStringLiteral("b")));
    EXPECT_EQ(answers, QStringList {QStringLiteral("a:no")});
    EXPECT_EQ(bridge.trashWindowId(), QStringLiteral("w2"));

    bridge.answerTrash(true);
    bridge.answerTrash(false); // a second click on a closing dialog answers nothing
    EXPECT_EQ(answers, (QStringList {QStringLiteral("a:no"), QStringLiteral("b:yes")}));
    EXPECT_TRUE(bridge.trashWindowId().isEmpty());
    EXPECT_TRUE(bridge.trashFileName().isEmpty());
}

TEST(SlideshowAppBridge, keysAnswerTheQuestionOnlyInItsWindow)
{
    struct Case {
        const char *name;
        QString window;
        QString key;
        bool taken;
        QStringList answers;
    };
    const QList<Case> cases {
        {"Return moves the file", "w1", "\r", true, {"yes"}},
        {"Escape keeps it", "w1", "escape", true, {"no"}},
        {"another key waits for an answer", "w1", " ", true, {}},
        {"a key in another window goes to the show", "w2", "escape", false, {}},
    };
    for (const Case &c : cases) {
        SlideshowAppBridge bridge({}, {});
        QStringList answers;
        EXPECT_FALSE(bridge.trashQuestionTakes(QStringLiteral("w1"), QStringLiteral("escape"))) << c.name;
        bridge.askTrash(QStringLiteral("w1"), QStringLiteral("a.jpg"),
            [&answers](bool confirmed) { answers << (confirmed ? "yes" : "no"); });
        EXPECT_EQ(bridge.trashQuestionTakes(c.window, c.key), c.taken) << c.name;
        EXPECT_EQ(answers, c.answers) << c.name;
        EXPECT_EQ(bridge.trashWindowId().isEmpty(), !c.answers.isEmpty()) << c.name;
    }
}

TEST(SlideshowAppBridge, theCollageIntroIsSeenOnceForGood)
{
    struct Case {
        const char *name;
        std::optional<PreferenceValue> stored;
        bool seen;
    };
    const QList<Case> cases {
        {"nothing stored", std::nullopt, false},
        {"seen before", PreferenceValue(true), true},
        {"stored as not seen", PreferenceValue(false), false},
        {"not a Boolean", PreferenceValue(QStringLiteral("yes")), false},
    };
    for (const Case &c : cases) {
        InMemoryPreferences stored;
        if (c.stored)
            stored.setValue(SlideshowAppBridge::hasSeenCollageIntroKey, *c.stored);
        SlideshowAppBridge bridge({}, {}, &stored);
        EXPECT_EQ(bridge.hasSeenCollageIntro(), c.seen) << c.name;
        bridge.collageIntroSeen();
        EXPECT_TRUE(bridge.hasSeenCollageIntro()) << c.name;
        // The next run does not show it again.
        EXPECT_TRUE(SlideshowAppBridge({}, {}, &stored).hasSeenCollageIntro()) << c.name;
    }
}

TEST(SlideshowAppBridge, theShortcutCardTogglesInItsWindowAndMovesToAnother)
{
    SlideshowAppBridge bridge({}, {});
    struct Step {
        std::function<void()> act;
        QString shownIn;
    };
    const QList<Step> steps {
        {[&] { bridge.showShortcuts(QStringLiteral("w1")); }, QStringLiteral("w1")},
        {[&] { bridge.showShortcuts(QStringLiteral("w2")); }, QStringLiteral("w2")},
        {[&] { bridge.showShortcuts(QStringLiteral("w2")); }, QString()},
        {[&] { bridge.showShortcuts(QStringLiteral("w1")); }, QStringLiteral("w1")},
        {[&] { bridge.hideShortcuts(); }, QString()},
    };
    for (qsizetype i = 0; i < steps.size(); ++i) {
        steps[i].act();
        EXPECT_EQ(bridge.shortcutsWindowId(), steps[i].shownIn) << "step " << i;
    }
}

TEST(SlideshowAppBridge, opensOnlyTheCurrentVideoInAnInstalledPlayer)
{
    test::SlideshowRig rig;
    ImageItem clip(QUrl::fromLocalFile(QStringLiteral("/show/clip.mp4")));
    clip.setMediaType(MediaType::video);
    auto onVideo = rig.make({clip});
    auto onPhoto = rig.make(test::numberedItems(1));
    onVideo->start();
    onPhoto->start();

    QList<Opened> opened;
    const auto open = [&opened](const ExternalVideoPlayer &player, const QString &file) -> std::optional<QString> {
        opened.append({player.id, file});
        return std::nullopt;
    };
    SlideshowAppBridge withPlayers({vlc}, open);
    SlideshowAppBridge withoutPlayers({}, open);

    EXPECT_TRUE(withPlayers.showsVideo(onVideo.get()));
    EXPECT_FALSE(withPlayers.showsVideo(onPhoto.get()));
    EXPECT_FALSE(withPlayers.showsVideo(nullptr));
    EXPECT_FALSE(withoutPlayers.showsVideo(onVideo.get()));
    EXPECT_EQ(withPlayers.videoPlayerNames(), QStringList {QStringLiteral("VLC")});

    withPlayers.openVideo(1, onVideo.get()); // no such player
    withPlayers.openVideo(0, onPhoto.get()); // not a video
    withPlayers.openVideo(0, onVideo.get());
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0].player, QStringLiteral("vlc"));
    EXPECT_EQ(opened[0].file, QStringLiteral("/show/clip.mp4"));
}

} // namespace
} // namespace sorvane
