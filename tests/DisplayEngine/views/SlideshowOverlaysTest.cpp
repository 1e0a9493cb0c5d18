// The slideshow window's overlays over a real view model: the shortcut card with a removed
// binding, every control button reaching the model, the control sizes, and the file-name line.
#include "SlideshowScene.h"

#include <QColor>
#include <QQmlExtensionPlugin>

#include <functional>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

namespace sorvane {
namespace {

using namespace sorvane::test;

SlideshowSettings hardCuts(SlideshowSettings settings)
{
    settings.transitionStyle = TransitionStyle::none;
    return settings;
}

// `subject` over a view model of three local stills, with `state` (a SlideshowViewState) at hand.
struct OverlayRig : SlideshowScene {
    OverlayRig(const QString &subject, const SlideshowSettings &settings = {})
        : SlideshowScene(QSize(1280, 800),
            QStringLiteral(
                "Item { id: root; required property SlideshowViewModel viewModel; property string log: \"\"\n"
                "SlideshowViewState { id: state; viewModel: root.viewModel }\n%1 }")
                .arg(subject),
            numberedItems(3), hardCuts(settings))
    {
    }
    QString log() const { return harness->root()->property("log").toString(); }
};

// The controls, shown, reporting exit to root.log.
struct ShownControls : OverlayRig {
    ShownControls()
        : OverlayRig(QStringLiteral("SlideshowControls { x: 100; y: 600; viewModel: root.viewModel; viewState: state;"
                                    " onExitRequested: root.log += \"exit;\" }"))
    {
        model->revealControls();
        if (harness->ok())
            harness->settle();
    }
};

TEST(ShortcutOverlay, ListsTheBindingsInForceAndGotItTellsTheHost)
{
    SlideshowSettings settings;
    settings.keyBindings.remove(toRaw(SlideshowAction::zoomIn));
    settings.keyBindings[toRaw(SlideshowAction::showHelp)]
        = KeyBinding {QStringLiteral("<"), KeyBinding::command | KeyBinding::shift};
    OverlayRig overlay(QStringLiteral("ShortcutOverlay { rows: state.shortcutRows; footer: state.shortcutFooter;"
                                      " onGotIt: root.log += \"gotIt;\" }"),
        settings);
    ASSERT_TRUE(overlay.harness->ok());
    const QStringList texts = textsIn(overlay.harness->root());
    EXPECT_TRUE(texts.contains("Keyboard Shortcuts"));

    QStringList lines;
    for (QQuickItem *row :
        visibleItems(overlay.harness->root(), [](QQuickItem *i) { return i->objectName() == "shortcutRow"; }))
        lines << textsIn(row).join(" = ");
    const QStringList expected {QStringLiteral("← / → = Navigate photos"), "Space = Play/Pause",
        "Not Set / Ctrl+- = Zoom in/out", "Esc = Exit slideshow", "R = Toggle Shuffle / In order",
        "T = Toggle transitions on/off", "F = Cycle photo filter", "Ctrl+F = Toggle full-screen"};
    EXPECT_EQ(lines.join("\n").toStdString(), expected.join("\n").toStdString());

    // The key between the marks is bold, its modifiers in order, and a key that looks like markup stays a key.
    EXPECT_TRUE(texts.contains("Press <b>Ctrl+Shift+&lt;</b> anytime for full keyboard shortcuts"))
        << texts.join("|").toStdString();

    overlay.harness->click(overlay.harness->visible("card"));
    EXPECT_EQ(overlay.log(), "");
    overlay.harness->click(overlay.harness->visible("gotItButton"));
    EXPECT_EQ(overlay.log(), "gotIt;");
}

TEST(SlideshowControls, EveryButtonActsOnTheViewModel)
{
    const struct {
        const char *button;
        std::function<bool(const SlideshowViewModel &)> done;
    } rows[] = {
        {"nextButton", [](const SlideshowViewModel &m) { return m.currentIndex() == 1; }},
        {"previousButton", [](const SlideshowViewModel &m) { return m.currentIndex() == 2; }},
        {"playPauseButton", [](const SlideshowViewModel &m) { return m.isPaused(); }},
        {"intervalUpButton", [](const SlideshowViewModel &m) { return m.slideDuration() == 6; }},
        {"intervalDownButton", [](const SlideshowViewModel &m) { return m.slideDuration() == 4; }},
        {"filterButton", [](const SlideshowViewModel &m) { return m.imageFilter() == ImageFilter::blackAndWhite; }},
    };
    for (const auto &row : rows) {
        ShownControls rig;
        ASSERT_TRUE(rig.harness->ok());
        QQuickItem *button = rig.harness->visible(QString::fromLatin1(row.button));
        ASSERT_NE(button, nullptr) << row.button;
        rig.harness->click(button);
        EXPECT_TRUE(row.done(*rig.model)) << row.button;
        // No manager: nothing to scope, so no scope button.
        EXPECT_EQ(rig.harness->visible("scopeButton"), nullptr);
    }
}

TEST(SlideshowControls, TheTransitionMenuSetsTheStyleAndExitIsReported)
{
    ShownControls rig;
    ASSERT_TRUE(rig.harness->ok());
    EXPECT_EQ(rig.harness->visible("transitionMenu"), nullptr);
    rig.harness->click(rig.harness->visible("transitionButton"));
    QQuickItem *menu = rig.harness->visible("transitionMenu");
    ASSERT_NE(menu, nullptr);
    QQuickItem *flip = nullptr;
    for (QQuickItem *choice : visibleItems(menu, [](QQuickItem *i) { return i->objectName() == "transitionChoice"; })) {
        if (textsIn(choice).contains("Flip"))
            flip = choice;
    }
    ASSERT_NE(flip, nullptr);
    rig.harness->click(flip);
    EXPECT_EQ(rig.model->settings().transitionStyle, TransitionStyle::flip);
    EXPECT_EQ(rig.harness->visible("transitionMenu"), nullptr);

    rig.harness->click(rig.harness->visible("exitButton"));
    EXPECT_EQ(rig.log(), "exit;");
}

TEST(SlideshowOverlays, TheFileNameLineFollowsTheSettings)
{
    const struct {
        bool info, always, progress, controls;
        FileDisplayFormat format;
        bool shown;
        const char *line;
    } rows[] = {
        {true, false, true, true, FileDisplayFormat::folderAndFilename, true, "show/img1.jpg   ·   1 of 3"},
        {true, true, false, false, FileDisplayFormat::filenameOnly, true, "img1.jpg"},
        {false, true, true, false, FileDisplayFormat::fullPath, true, "1 of 3"},
        {true, false, true, false, FileDisplayFormat::filenameOnly, false, "img1.jpg   ·   1 of 3"},
    };
    for (const auto &row : rows) {
        SlideshowSettings settings;
        settings.showImageInfo = row.info;
        settings.alwaysShowImageInfo = row.always;
        settings.showProgress = row.progress;
        settings.fileDisplayFormat = row.format;
        OverlayRig rig(QStringLiteral("SlideshowOverlays { objectName: \"overlays\"; anchors.fill: parent;"
                                      " viewModel: root.viewModel; viewState: state }"),
            settings);
        ASSERT_TRUE(rig.harness->ok());
        if (row.controls)
            rig.model->revealControls();
        QQuickItem *overlays = rig.harness->find("overlays");
        QQuickItem *caption = rig.harness->find("caption");
        EXPECT_EQ(overlays->property("lineShown").toBool(), row.shown) << row.line;
        EXPECT_EQ(caption->property("line").toString(), QString::fromUtf8(row.line));
    }
}

TEST(SlideshowOverlays, CardsComeOnTheHostsWordAndTheirButtonsTellIt)
{
    const struct {
        const char *flag;
        const char *button;
        const char *title;
    } rows[] = {
        {"showShortcuts", "gotItButton", "Keyboard Shortcuts"},
        {"showMultiMonitorTip", "closeButton", "Playing on more than one screen"},
    };
    for (const auto &row : rows) {
        OverlayRig rig(QStringLiteral("SlideshowOverlays { objectName: \"overlays\"; anchors.fill: parent;"
                                      " viewModel: root.viewModel; viewState: state;"
                                      " onShortcutsDismissed: root.log += \"showShortcuts;\";"
                                      " onMultiMonitorTipDismissed: root.log += \"showMultiMonitorTip;\" }"));
        ASSERT_TRUE(rig.harness->ok());
        EXPECT_FALSE(textsIn(rig.harness->root()).contains(row.title)) << row.flag;
        rig.harness->find("overlays")->setProperty(row.flag, true);
        rig.harness->settle();
        EXPECT_TRUE(textsIn(rig.harness->root()).contains(row.title)) << row.flag;
        QQuickItem *button = rig.harness->visible(row.button);
        ASSERT_NE(button, nullptr) << row.flag;
        rig.harness->click(button);
        EXPECT_EQ(rig.log(), QString::fromLatin1(row.flag) + ";");
    }
}

} // namespace
} // namespace sorvane
