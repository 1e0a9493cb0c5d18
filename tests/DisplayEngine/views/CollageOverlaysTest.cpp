// The collage wall's overlays (intro card, tile menu, tile hover controls), driven through a real
// Qt Quick window: texts, clicks that must or must not reach the wall, and the hover timing.
#include "QmlHarness.h"

#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <functional>
#include <memory>
#include <vector>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

namespace sorvane {
namespace {

using namespace sorvane::test;

// One component (objectName "subject") in an offscreen window, above a stand-in wall that counts
// the clicks reaching it. Signal handlers in the component append to root.log.
class Scene {
public:
    Scene(QSize size, const QString &subject)
        : m_harness(size,
            QStringLiteral(R"(Item {
    id: root
    property int wallClicks: 0
    property string log: ""
    MouseArea { anchors.fill: parent; acceptedButtons: Qt.AllButtons; onClicked: root.wallClicks += 1 }
    %1
})")
                .arg(subject))
    {
        // Takes the expose event now, so the first frame does not land in the middle of a test's input.
        QCoreApplication::processEvents();
        // The pointer starts outside: a move to where the last scene left it would count as no move.
        QTest::mouseMove(&m_harness.window(), QPoint(-10, -10));
        settle();
    }

    bool ok() const { return m_harness.ok() && subject(); }
    QQuickItem *subject() const { return m_harness.find(QStringLiteral("subject")); }
    QQuickItem *part(const QString &name) const
    {
        const auto found = visibleItems(subject(), [&](QQuickItem *item) { return item->objectName() == name; });
        return found.empty() ? nullptr : found.front();
    }

    // Rendering a frame also runs the polish pass that places the positioners' children.
    void settle() { m_harness.settle(); }

    void click(QPointF at, Qt::MouseButton button = Qt::LeftButton) { m_harness.click(at, button); }
    void click(QQuickItem *item) { click(item->mapToScene(QPointF(item->width() / 2, item->height() / 2))); }
    void move(QPointF to)
    {
        QTest::mouseMove(&m_harness.window(), to.toPoint());
        m_pointer = to;
        settle();
    }
    // What the window does after items moved under a pointer that stayed put: hover again at the
    // same place. Sent straight to the window, since the application drops a move that goes nowhere.
    void hoverInPlace()
    {
        QMouseEvent event(QEvent::MouseMove, m_pointer, m_pointer, m_harness.window().mapToGlobal(m_pointer),
            Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_harness.window(), &event);
        settle();
    }

    QVariant get(const char *name) const { return subject()->property(name); }
    void set(const char *name, const QVariant &value)
    {
        subject()->setProperty(name, value);
        settle();
    }
    int wallClicks() const { return m_harness.root()->property("wallClicks").toInt(); }
    QStringList log() const { return m_harness.root()->property("log").toString().split(u';', Qt::SkipEmptyParts); }
    void clearLog() { m_harness.root()->setProperty("log", QString()); }

private:
    QmlHarness m_harness;
    QPointF m_pointer;
};

// ---- Intro overlay

const QString kOverlay
    = QStringLiteral("CollageIntroOverlay { objectName: \"subject\"; onDismissed: root.log += \"dismissed;\" }");

TEST(CollageIntroOverlay, ShowsItsTextsAndSymbolsAndOnlyItsButtonDismissesIt)
{
    Scene scene({1920, 1080}, kOverlay);
    ASSERT_TRUE(scene.ok());
    EXPECT_EQ(textsIn(scene.subject()),
        QStringList({"Collage Slideshow",
            "Many photos fill the screen at once and refresh on their own. You can still interact with any photo:",
            "Click the left or right of a photo", "Show the previous or next photo in that spot",
            "Double-click a photo", "Open it full-screen as a Standard slideshow",
            "Press ? at any time to see all keyboard shortcuts.", "Don't show this again"}));

    QStringList symbols;
    for (QQuickItem *image :
        visibleItems(scene.subject(), [](QQuickItem *item) { return item->inherits("QQuickImage"); })) {
        symbols << image->property("source").toUrl().fileName();
        EXPECT_EQ(image->property("status").toInt(), 1) << "not ready: " << symbols.back().toStdString();
    }
    EXPECT_EQ(symbols,
        QStringList({"square.grid.2x2.fill.svg", "rectangle.lefthalf.filled.svg",
            "arrow.up.left.and.arrow.down.right.svg", "questionmark.circle.svg"}));
    // Only the button dismisses it, and no click reaches the wall beneath.
    QQuickItem *card = scene.part(QStringLiteral("introCard"));
    ASSERT_NE(card, nullptr);
    scene.click(QPointF(5, 5));
    scene.click(QPointF(1915, 1075), Qt::RightButton);
    scene.click(card->mapToScene(QPointF(10, 10)));
    EXPECT_EQ(scene.log(), QStringList());
    scene.click(scene.part(QStringLiteral("dismissButton")));
    EXPECT_EQ(scene.log(), QStringList({"dismissed"}));
    EXPECT_EQ(scene.wallClicks(), 0);
}

// ---- Context menu

const QString kMenu = QStringLiteral(R"(CollageContextMenu {
    objectName: "subject"
    onHostItemChosen: (id, slot) => root.log += "host:" + id + ":" + slot + ";"
    onOpenFullRequested: slot => root.log += "full:" + slot + ";"
    onToggleAutoCycleRequested: root.log += "cycle;"
    onMenuOpened: id => root.log += "opened:" + id + ";"
    onMenuClosed: id => root.log += "closed:" + id + ";"
})");

QVariantList hostItems(const std::vector<std::pair<QString, QString>> &items)
{
    QVariantList list;
    for (const auto &[id, text] : items)
        list << QVariantMap {{"id", id}, {"text", text}};
    return list;
}

void openMenu(Scene &scene, double x, double y, int slot)
{
    QMetaObject::invokeMethod(scene.subject(), "openAt", Q_ARG(QVariant, x), Q_ARG(QVariant, y), Q_ARG(QVariant, slot));
    scene.settle();
}

std::vector<QQuickItem *> menuRows(Scene &scene)
{
    return visibleItems(scene.subject(), [](QQuickItem *item) { return item->objectName() == "menuRow"; });
}

TEST(CollageContextMenu, ListsHostItemsThenTheWallsOwnAndAsksForTheChosenOne)
{
    struct Case {
        bool flowWall;
        bool autoCycling;
        QVariantList host;
        QStringList expected;
    };
    const Case cases[] = {
        {false, false, {}, {"Open in a full slideshow"}},
        {true, false, hostItems({{"tag", "Tag…"}, {"hide", "Hide this photo"}}),
            {"Tag…", "Hide this photo", "Open in a full slideshow", "Start automatic tile cycling"}},
        {true, true, {}, {"Open in a full slideshow", "Stop automatic tile cycling"}},
    };
    Scene scene({800, 600}, kMenu);
    ASSERT_TRUE(scene.ok());
    for (const Case &c : cases) {
        SCOPED_TRACE(::testing::Message() << "flow " << c.flowWall << " cycling " << c.autoCycling);
        scene.set("flowWall", c.flowWall);
        scene.set("autoCycling", c.autoCycling);
        scene.set("hostItems", c.host);
        openMenu(scene, 100, 100, 0);
        QStringList texts;
        for (QQuickItem *row : menuRows(scene))
            texts << textsIn(row).join(u'|');
        EXPECT_EQ(texts, c.expected);
        QMetaObject::invokeMethod(scene.subject(), "close");
    }

    // Choosing a row closes the menu, then asks for its entry with the slot.
    const std::pair<int, QString> choices[] = {{0, "host:tag:7"}, {1, "host:hide:7"}, {2, "full:7"}, {3, "cycle"}};
    scene.set("flowWall", true);
    scene.set("hostItems", hostItems({{"tag", "Tag…"}, {"hide", "Hide this photo"}}));
    for (const auto &[row, expected] : choices) {
        SCOPED_TRACE(row);
        scene.clearLog();
        openMenu(scene, 200, 150, 7);
        const QString id = scene.get("menuId").toString();
        const auto rows = menuRows(scene);
        ASSERT_EQ(rows.size(), 4u);
        scene.click(rows[row]);
        EXPECT_EQ(scene.log(), QStringList({"opened:" + id, "closed:" + id, expected}));
        EXPECT_FALSE(scene.get("isOpen").toBool());
    }
    EXPECT_EQ(scene.wallClicks(), 0);
}

// ---- Tile hover controls

const QString kTile = QStringLiteral(R"(CollageTileGestures {
    objectName: "subject"; x: 100; y: 100; width: 400; height: 300
    onPreviousRequested: root.log += "previous;"
    onNextRequested: root.log += "next;"
})");

const QPointF kInsideTile(300, 200);
const QPointF kOutsideTile(50, 50);

// Lets the pointer rest for some time by firing the hide timer as often as that time holds.
void rest(Scene &scene, int milliseconds)
{
    QObject *timer = qvariant_cast<QObject *>(scene.get("hideTimer"));
    ASSERT_NE(timer, nullptr);
    const int interval = timer->property("interval").toInt();
    ASSERT_GT(interval, 0);
    for (int elapsed = interval; elapsed <= milliseconds; elapsed += interval) {
        if (!timer->property("running").toBool())
            break;
        QMetaObject::invokeMethod(timer, "triggered");
    }
    scene.settle();
}

TEST(CollageTileGestures, ControlsFollowMovementRestAndLeaving)
{
    using Action = std::function<void(Scene &)>;
    const Action move = [](Scene &s) { s.move(kInsideTile); };
    const Action moveElsewhere = [](Scene &s) { s.move(kInsideTile + QPointF(17, 11)); };
    const Action leave = [](Scene &s) { s.move(kOutsideTile); };
    const auto restFor = [](int milliseconds) { return Action([=](Scene &s) { rest(s, milliseconds); }); };
    // A Flow strip moves its tiles under a pointer that is not moving.
    const Action scroll = [](Scene &s) {
        s.set("y", s.get("y").toReal() - 9);
        s.hoverInPlace();
    };
    const auto controls = [](bool on) { return Action([=](Scene &s) { s.set("showHoverControls", on); }); };
    struct Case {
        const char *name;
        std::vector<std::pair<Action, bool>> steps; // and whether the controls show after it
    };
    const Case cases[] = {
        {"a newer movement restarts the wait",
            {{move, true}, {restFor(2000), true}, {moveElsewhere, true}, {restFor(2400), true}, {restFor(100), false}}},
        {"a tile scrolling under a resting pointer stays quiet",
            {{move, true}, {restFor(2500), false}, {scroll, false}, {scroll, false}}},
        {"leaving hides at once", {{move, true}, {leave, false}, {restFor(5000), false}}},
        {"switched off never shows", {{controls(false), false}, {move, false}, {moveElsewhere, false}}},
        {"switching off hides", {{move, true}, {controls(false), false}, {controls(true), false}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Scene scene({800, 600}, kTile);
        ASSERT_TRUE(scene.ok());
        EXPECT_FALSE(scene.get("controlsVisible").toBool());
        int stepIndex = 0;
        for (const auto &[action, visibleAfter] : c.steps) {
            SCOPED_TRACE(stepIndex++);
            action(scene);
            EXPECT_EQ(scene.get("controlsVisible").toBool(), visibleAfter);
            EXPECT_EQ(scene.part(QStringLiteral("hoverBar")) != nullptr, visibleAfter);
        }
    }
}

} // namespace
} // namespace sorvane
