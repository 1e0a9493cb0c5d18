// The collage wall's overlays (intro card, tile menu, tile hover controls), driven through a real
// Qt Quick window: texts, clicks that must or must not reach the wall, and the hover timing.
#include "QuickItems.h"

#include <gtest/gtest.h>

#include <QMouseEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>
#include <QTest>

#include <cmath>
#include <functional>
#include <memory>
#include <vector>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

namespace sorvane {
namespace {

bool isText(QQuickItem *item)
{
    return item->inherits("QQuickText");
}
bool isImage(QQuickItem *item)
{
    return item->inherits("QQuickImage");
}

QStringList textsIn(QQuickItem *root)
{
    QStringList texts;
    for (QQuickItem *item : visibleItems(root, isText))
        texts << item->property("text").toString();
    return texts;
}

QQuickItem *named(QQuickItem *root, const QString &name)
{
    const auto found = visibleItems(root, [&](QQuickItem *item) { return item->objectName() == name; });
    return found.empty() ? nullptr : found.front();
}

QRectF sceneRect(QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

bool contains(const QRectF &outer, const QRectF &inner)
{
    constexpr double slack = 0.5; // rounding of scene coordinates
    return inner.left() >= outer.left() - slack && inner.top() >= outer.top() - slack
        && inner.right() <= outer.right() + slack && inner.bottom() <= outer.bottom() + slack;
}

// One component (objectName "subject") in an offscreen window, above a stand-in wall that counts
// the clicks reaching it. Signal handlers in the component append to root.log.
class Scene {
public:
    Scene(QSize size, const QString &subject)
    {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&m_engine);
        component.setData(QStringLiteral("import QtQuick\nimport Sorvane.Views\n"
                                         "Item {\n"
                                         "    id: root\n"
                                         "    property int wallClicks: 0\n"
                                         "    property string log: \"\"\n"
                                         "    MouseArea { anchors.fill: parent; acceptedButtons: Qt.AllButtons;"
                                         " onClicked: root.wallClicks += 1 }\n"
                                         "%1\n"
                                         "}\n")
                              .arg(subject)
                              .toUtf8(),
            QUrl(QStringLiteral("qrc:/collage-overlays-test/Scene.qml")));
        m_root.reset(qobject_cast<QQuickItem *>(component.create()));
        if (!m_root) {
            ADD_FAILURE() << component.errorString().toStdString();
            return;
        }
        m_window.resize(size);
        m_root->setSize(size);
        m_root->setParentItem(m_window.contentItem());
        m_window.show();
        // Takes the expose event now, so the first frame does not land in the middle of a test's input.
        QCoreApplication::processEvents();
        // The pointer starts outside: a move to where the last scene left it would count as no move.
        QTest::mouseMove(&m_window, QPoint(-10, -10));
        settle();
    }

    bool ok() const { return m_root && subject(); }
    QQuickItem *root() const { return m_root.get(); }
    QQuickItem *subject() const
    {
        return m_root ? m_root->findChild<QQuickItem *>(QStringLiteral("subject")) : nullptr;
    }
    QQuickItem *part(const QString &name) const { return named(subject(), name); }
    QQuickWindow &window() { return m_window; }

    // Rendering a frame also runs the polish pass that places the positioners' children.
    void settle() { (void)m_window.grabWindow(); }

    void click(QPointF at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(&m_window, button, {}, at.toPoint());
        settle();
    }
    void click(QQuickItem *item) { click(item->mapToScene(QPointF(item->width() / 2, item->height() / 2))); }
    void move(QPointF to)
    {
        QTest::mouseMove(&m_window, to.toPoint());
        m_pointer = to;
        settle();
    }
    // What the window does after items moved under a pointer that stayed put: hover again at the
    // same place. Sent straight to the window, since the application drops a move that goes nowhere.
    void hoverInPlace()
    {
        QMouseEvent event(QEvent::MouseMove, m_pointer, m_pointer, m_window.mapToGlobal(m_pointer), Qt::NoButton,
            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_window, &event);
        settle();
    }

    QVariant get(const char *name) const { return subject()->property(name); }
    void set(const char *name, const QVariant &value)
    {
        subject()->setProperty(name, value);
        settle();
    }
    int wallClicks() const { return m_root->property("wallClicks").toInt(); }
    QStringList log() const { return m_root->property("log").toString().split(u';', Qt::SkipEmptyParts); }
    void clearLog() { m_root->setProperty("log", QString()); }

private:
    // Software rendering, chosen before the first window exists: the offscreen platform has no GPU.
    struct SoftwareRendering {
        SoftwareRendering()
        {
            static const bool chosen = [] {
                QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
                return true;
            }();
            (void)chosen;
        }
    } m_rendering;
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
    QPointF m_pointer;
};

QString sizeName(QSize size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

// ---- Intro overlay

const QString kOverlay
    = QStringLiteral("CollageIntroOverlay { objectName: \"subject\"; onDismissed: root.log += \"dismissed;\" }");

TEST(CollageIntroOverlay, ShowsExactlyItsTextsAndSymbolsInOrder)
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
    for (QQuickItem *image : visibleItems(scene.subject(), isImage)) {
        symbols << image->property("source").toUrl().fileName();
        EXPECT_EQ(image->property("status").toInt(), 1) << "not ready: " << symbols.back().toStdString();
    }
    EXPECT_EQ(symbols,
        QStringList({"square.grid.2x2.fill.svg", "rectangle.lefthalf.filled.svg",
            "arrow.up.left.and.arrow.down.right.svg", "questionmark.circle.svg"}));
}

TEST(CollageIntroOverlay, CardFitsTheWindowAndHoldsEveryTextUncutAtEachSize)
{
    for (const QSize size : {QSize(1280, 720), QSize(1920, 1080), QSize(3840, 2160), QSize(1080, 1920)}) {
        SCOPED_TRACE(sizeName(size).toStdString());
        Scene scene(size, kOverlay);
        ASSERT_TRUE(scene.ok());
        QQuickItem *card = scene.part(QStringLiteral("introCard"));
        ASSERT_NE(card, nullptr);
        const QRectF cardRect = sceneRect(card);
        EXPECT_TRUE(contains(QRectF(QPointF(0, 0), QSizeF(size)).adjusted(16, 16, -16, -16), cardRect));
        // The card uses the room it has: neither a postage stamp on 4K nor a banner in portrait.
        EXPECT_GE(cardRect.width(), size.width() * 0.3);
        EXPECT_LE(cardRect.height(), size.height() * 0.85);
        for (QQuickItem *text : visibleItems(card, isText)) {
            SCOPED_TRACE(text->property("text").toString().toStdString());
            EXPECT_TRUE(contains(cardRect, sceneRect(text)));
            EXPECT_FALSE(text->property("truncated").toBool());
            EXPECT_LE(text->property("contentWidth").toReal(), text->width() + 0.5);
        }
    }
}

TEST(CollageIntroOverlay, OnlyTheButtonDismissesAndNoClickReachesTheWall)
{
    Scene scene({1280, 720}, kOverlay);
    ASSERT_TRUE(scene.ok());
    QQuickItem *card = scene.part(QStringLiteral("introCard"));
    ASSERT_NE(card, nullptr);

    scene.click(QPointF(5, 5));
    scene.click(QPointF(1275, 715), Qt::RightButton);
    scene.click(card->mapToScene(QPointF(10, 10)));
    EXPECT_EQ(scene.log(), QStringList());

    scene.click(scene.part(QStringLiteral("dismissButton")));
    EXPECT_EQ(scene.log(), QStringList({"dismissed"}));
    EXPECT_EQ(scene.wallClicks(), 0);
}

// ---- Context menu

const QString kMenu
    = QStringLiteral("CollageContextMenu {\n"
                     "    objectName: \"subject\"\n"
                     "    onHostItemChosen: (id, slot) => root.log += \"host:\" + id + \":\" + slot + \";\"\n"
                     "    onOpenFullRequested: slot => root.log += \"full:\" + slot + \";\"\n"
                     "    onToggleAutoCycleRequested: root.log += \"cycle;\"\n"
                     "    onMenuOpened: id => root.log += \"opened:\" + id + \";\"\n"
                     "    onMenuClosed: id => root.log += \"closed:\" + id + \";\"\n"
                     "}");

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

QStringList rowTexts(Scene &scene)
{
    QStringList texts;
    for (QQuickItem *row : menuRows(scene))
        texts << textsIn(row).join(u'|');
    return texts;
}

TEST(CollageContextMenu, ListsHostItemsThenTheWallsOwnForEachWall)
{
    struct Case {
        bool flowWall;
        bool autoCycling;
        QVariantList host;
        QStringList expected;
    };
    const Case cases[] = {
        {false, false, {}, {"Open in a full slideshow"}},
        {false, true, hostItems({{"tag", "Tag…"}}), {"Tag…", "Open in a full slideshow"}},
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
        EXPECT_EQ(rowTexts(scene), c.expected);
        QMetaObject::invokeMethod(scene.subject(), "close");
    }
}

TEST(CollageContextMenu, RowsKeepTheirWholeTextAsTheMenuScalesWithTheWindow)
{
    // The items are set before the window gives the menu its size, so only the size change can
    // make the menu measure its rows again.
    for (const QSize size : {QSize(1280, 720), QSize(3840, 2160), QSize(1080, 1920)}) {
        SCOPED_TRACE(sizeName(size).toStdString());
        Scene scene(size,
            QStringLiteral("CollageContextMenu { objectName: \"subject\"; flowWall: true;"
                           " hostItems: [{ id: \"tag\", text: \"Tag this photo with a long name\" }] }"));
        ASSERT_TRUE(scene.ok());
        openMenu(scene, 10, 10, 0);
        const auto rows = menuRows(scene);
        ASSERT_EQ(rows.size(), 3u);
        for (QQuickItem *row : rows)
            EXPECT_FALSE(visibleItems(row, isText).front()->property("truncated").toBool());
    }
}

TEST(CollageContextMenu, ChoosingAnItemClosesTheMenuThenAsksForItWithTheSlot)
{
    const std::pair<int, QString> cases[] = {{0, "host:tag:7"}, {1, "host:hide:7"}, {2, "full:7"}, {3, "cycle"}};
    Scene scene({800, 600}, kMenu);
    ASSERT_TRUE(scene.ok());
    scene.set("flowWall", true);
    scene.set("hostItems", hostItems({{"tag", "Tag…"}, {"hide", "Hide this photo"}}));
    for (const auto &[row, expected] : cases) {
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

TEST(CollageContextMenu, OutsideClicksCloseWithoutChoosingAndEveryOpeningHasItsOwnId)
{
    Scene scene({800, 600}, kMenu);
    ASSERT_TRUE(scene.ok());

    openMenu(scene, 100, 100, 3);
    const QString first = scene.get("menuId").toString();
    EXPECT_TRUE(scene.get("isOpen").toBool());
    EXPECT_EQ(scene.get("slot").toInt(), 3);
    scene.click(QPointF(700, 500));
    EXPECT_FALSE(scene.get("isOpen").toBool());

    openMenu(scene, 100, 100, 4);
    const QString second = scene.get("menuId").toString();
    scene.click(QPointF(20, 580), Qt::RightButton);

    // Opening over an open menu closes the old one first.
    openMenu(scene, 300, 300, 5);
    const QString third = scene.get("menuId").toString();
    openMenu(scene, 400, 300, 6);
    const QString fourth = scene.get("menuId").toString();
    QMetaObject::invokeMethod(scene.subject(), "close");
    QMetaObject::invokeMethod(scene.subject(), "close");

    EXPECT_EQ(QSet<QString>({first, second, third, fourth}).size(), 4);
    EXPECT_EQ(scene.log(),
        QStringList({"opened:" + first, "closed:" + first, "opened:" + second, "closed:" + second, "opened:" + third,
            "closed:" + third, "opened:" + fourth, "closed:" + fourth}));
    EXPECT_EQ(scene.wallClicks(), 0);

    // Closed, the menu lets the wall have its clicks again.
    scene.click(QPointF(700, 500));
    EXPECT_EQ(scene.wallClicks(), 1);
}

TEST(CollageContextMenu, StaysInsideItsParentWhereverItOpens)
{
    const QSize size(800, 600);
    Scene scene(size, kMenu);
    ASSERT_TRUE(scene.ok());
    scene.set("flowWall", true);
    const QRectF bounds(QPointF(0, 0), QSizeF(size));

    openMenu(scene, 120, 80, 0);
    QQuickItem *panel = scene.part(QStringLiteral("menuPanel"));
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(sceneRect(panel).topLeft(), QPointF(120, 80)) << "with room, the menu opens at the point";

    const QPointF points[] = {{799, 599}, {790, 10}, {5, 595}, {0, 0}, {400, 599}, {799, 300}};
    for (const QPointF point : points) {
        SCOPED_TRACE(::testing::Message() << point.x() << "," << point.y());
        openMenu(scene, point.x(), point.y(), 0);
        EXPECT_TRUE(contains(bounds, sceneRect(panel)));
    }

    // A host item far wider than the window is cut, not spilled.
    scene.set("hostItems", hostItems({{"long", QString(300, u'W')}}));
    openMenu(scene, 700, 500, 0);
    EXPECT_TRUE(contains(bounds, sceneRect(panel)));
    const auto rows = menuRows(scene);
    ASSERT_FALSE(rows.empty());
    EXPECT_TRUE(visibleItems(rows.front(), isText).front()->property("truncated").toBool());
}

// ---- Tile hover controls

const QString kTile = QStringLiteral("CollageTileGestures {\n"
                                     "    objectName: \"subject\"\n"
                                     "    x: 100; y: 100; width: 400; height: 300\n"
                                     "    onPreviousRequested: root.log += \"previous;\"\n"
                                     "    onNextRequested: root.log += \"next;\"\n"
                                     "}");

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
    enum class Do { move, moveElsewhere, moveOntoButton, leave, rest, scroll, switchOff, switchOn };
    struct Step {
        Do action;
        int milliseconds;
        bool visibleAfter;
    };
    struct Case {
        const char *name;
        std::vector<Step> steps;
    };
    const Case cases[] = {
        {"movement shows, rest hides", {{Do::move, 0, true}, {Do::rest, 2400, true}, {Do::rest, 100, false}}},
        {"a newer movement restarts the wait",
            {{Do::move, 0, true}, {Do::rest, 2000, true}, {Do::moveElsewhere, 0, true}, {Do::rest, 2400, true},
                {Do::rest, 100, false}}},
        {"movement over a button counts too",
            {{Do::move, 0, true}, {Do::rest, 2000, true}, {Do::moveOntoButton, 0, true}, {Do::rest, 2400, true},
                {Do::rest, 100, false}}},
        {"movement after hiding shows again",
            {{Do::move, 0, true}, {Do::rest, 2500, false}, {Do::moveElsewhere, 0, true}}},
        // A Flow strip moves its tiles under a pointer that is not moving.
        {"a tile scrolling under a resting pointer stays quiet",
            {{Do::move, 0, true}, {Do::rest, 2500, false}, {Do::scroll, 0, false}, {Do::scroll, 0, false}}},
        {"leaving hides at once", {{Do::move, 0, true}, {Do::leave, 0, false}, {Do::rest, 5000, false}}},
        {"switched off never shows", {{Do::switchOff, 0, false}, {Do::move, 0, false}, {Do::moveElsewhere, 0, false}}},
        {"switching off hides", {{Do::move, 0, true}, {Do::switchOff, 0, false}, {Do::switchOn, 0, false}}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Scene scene({800, 600}, kTile);
        ASSERT_TRUE(scene.ok());
        EXPECT_FALSE(scene.get("controlsVisible").toBool());
        int stepIndex = 0;
        for (const Step &step : c.steps) {
            SCOPED_TRACE(stepIndex++);
            switch (step.action) {
            case Do::move:
                scene.move(kInsideTile);
                break;
            case Do::moveElsewhere:
                scene.move(kInsideTile + QPointF(17, 11));
                break;
            case Do::moveOntoButton: {
                QQuickItem *next = scene.part(QStringLiteral("nextButton"));
                ASSERT_NE(next, nullptr);
                scene.move(next->mapToScene(QPointF(next->width() / 2, next->height() / 2)));
                break;
            }
            case Do::leave:
                scene.move(kOutsideTile);
                break;
            case Do::rest:
                rest(scene, step.milliseconds);
                break;
            case Do::scroll:
                scene.set("y", scene.get("y").toReal() - 9);
                scene.hoverInPlace();
                break;
            case Do::switchOff:
                scene.set("showHoverControls", false);
                break;
            case Do::switchOn:
                scene.set("showHoverControls", true);
                break;
            }
            EXPECT_EQ(scene.get("controlsVisible").toBool(), step.visibleAfter);
            EXPECT_EQ(scene.part(QStringLiteral("hoverBar")) != nullptr, step.visibleAfter);
        }
    }
}

TEST(CollageTileGestures, ButtonsStepAndEveryOtherClickReachesTheWall)
{
    Scene scene({800, 600}, kTile);
    ASSERT_TRUE(scene.ok());
    scene.move(kInsideTile);
    QQuickItem *previous = scene.part(QStringLiteral("previousButton"));
    QQuickItem *next = scene.part(QStringLiteral("nextButton"));
    ASSERT_NE(previous, nullptr);
    ASSERT_NE(next, nullptr);
    for (QQuickItem *button : {previous, next}) {
        const QRectF buttonRect = sceneRect(button);
        EXPECT_TRUE(contains(QRectF(100, 100, 400, 300), buttonRect));
        EXPECT_GT(buttonRect.top(), 100 + 300 * 0.6) << "the controls sit at the tile's foot";
    }
    const QPointF nextPoint = next->mapToScene(QPointF(next->width() / 2, next->height() / 2));

    scene.click(previous);
    scene.click(next);
    EXPECT_EQ(scene.log(), QStringList({"previous", "next"}));
    EXPECT_EQ(scene.wallClicks(), 0);

    scene.click(kInsideTile);
    EXPECT_EQ(scene.wallClicks(), 1) << "the photo itself belongs to the wall";

    // Once hidden, the controls take no clicks: a click on the resting pointer is the photo's.
    scene.move(nextPoint);
    rest(scene, 5000);
    ASSERT_FALSE(scene.get("controlsVisible").toBool());
    scene.click(nextPoint);
    EXPECT_EQ(scene.wallClicks(), 2);
    EXPECT_EQ(scene.log(), QStringList({"previous", "next"}));
}

QVariantList tags(const QStringList &names)
{
    const QStringList colours = {"#FF453A", "#30D158", "#0A84FF", "#FFD60A", "#BF5AF2", "#FF9F0A"};
    QVariantList list;
    for (int i = 0; i < names.size(); ++i)
        list << QVariantMap {{"name", names[i]}, {"color", colours[i % colours.size()]}};
    return list;
}

TEST(CollageTileGestures, TagsShowAsChipsThatFitTheTile)
{
    struct Case {
        int tileWidth;
        QStringList names;
        bool allNamesWhole; // every tag shown with its whole name
        bool accounted; // every tag shown or counted in "+n"; a tile with no room shows just the buttons
    };
    const Case cases[] = {
        {400, {"Family", "Beach", "2019"}, true, true},
        {400, {}, true, true},
        {400, {QString(60, u'x')}, false, true},
        {150, {"Family", "Beach", "2019", "Holiday", "Friends"}, false, true},
        {90, {"Family", "Beach"}, false, false},
        {50, {"Family"}, false, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(::testing::Message() << c.tileWidth << " wide, " << c.names.size() << " tags");
        Scene scene({800, 600}, kTile);
        ASSERT_TRUE(scene.ok());
        scene.set("width", c.tileWidth);
        scene.set("hoverTags", tags(c.names));
        scene.move(QPointF(100 + c.tileWidth / 2.0, 200));
        ASSERT_TRUE(scene.get("controlsVisible").toBool());

        QQuickItem *bar = scene.part(QStringLiteral("hoverBar"));
        ASSERT_NE(bar, nullptr);
        EXPECT_TRUE(contains(QRectF(100, 100, c.tileWidth, 300), sceneRect(bar)));

        const auto chips = visibleItems(bar, [](QQuickItem *item) { return item->objectName() == "tagChip"; });
        QStringList shown;
        bool cut = false;
        for (QQuickItem *chip : chips) {
            QQuickItem *label = visibleItems(chip, isText).front();
            shown << label->property("text").toString();
            cut = cut || label->property("truncated").toBool();
            EXPECT_TRUE(contains(sceneRect(bar), sceneRect(chip)));
        }
        EXPECT_EQ(shown, c.names.mid(0, shown.size())) << "chips keep the tags' order";
        QQuickItem *more = named(bar, QStringLiteral("moreTags"));
        const int hidden = more ? more->property("text").toString().mid(1).toInt() : 0;
        EXPECT_EQ(shown.size() + hidden, c.accounted ? c.names.size() : 0);
        EXPECT_EQ(c.allNamesWhole, !cut && shown.size() == c.names.size());
    }
}

// ---- Symbols

TEST(CollageSymbols, EveryIconLoads)
{
    const char *symbols[] = {"square.grid.2x2.fill", "rectangle.lefthalf.filled", "arrow.up.left.and.arrow.down.right",
        "questionmark.circle", "chevron.left", "chevron.right"};
    for (const char *symbol : symbols) {
        SCOPED_TRACE(symbol);
        Scene scene(
            {64, 64}, QStringLiteral("SymbolIcon { objectName: \"subject\"; symbol: \"%1\"; size: 48 }").arg(symbol));
        ASSERT_TRUE(scene.ok());
        EXPECT_EQ(scene.get("status").toInt(), 1);
        EXPECT_GT(scene.get("implicitWidth").toReal(), 0);
    }
}

} // namespace
} // namespace sorvane
