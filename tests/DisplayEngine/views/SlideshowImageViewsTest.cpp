// The central slideshow view over a real view model on fake time: where each layer stands at
// points of every transition, the Ken Burns drift through the hold, zoom and pan, and the
// engine's enumerations as QML compares them.
#include "SlideshowScene.h"

#include "collage/CollageWallModel.h"
#include "views/SlideshowEnums.h"

#include <QMetaEnum>
#include <QQmlExtensionPlugin>

#include <cmath>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

namespace sorvane {
namespace {

using namespace sorvane::test;

constexpr double kWidth = 800;
constexpr double kHeight = 600;

struct Layer {
    double opacity, scale, x, turn;
};

SlideshowSettings withStyle(TransitionStyle style)
{
    SlideshowSettings settings;
    settings.transitionStyle = style;
    settings.transitionDuration = 1.0;
    return settings;
}

// The slideshow view over a running model of three local stills.
struct ViewsRig : SlideshowScene {
    explicit ViewsRig(TransitionStyle style, QList<ImageItem> items = numberedItems(3))
        : SlideshowScene(QSize(kWidth, kHeight),
            QStringLiteral("SlideshowImageViews { property bool flipping: viewModel.activeTransitionStyle === "
                           "Slideshow.TransitionStyle.Flip }"),
            std::move(items), withStyle(style))
    {
    }

    // The layer that shows the item at `index` of the model's images.
    Layer layerShowing(int index) const
    {
        const QString wanted = model->images().at(index).id().toString(QUuid::WithoutBraces);
        for (const char *name : {"primaryLayer", "secondaryLayer"}) {
            QQuickItem *layer = harness->find(QString::fromLatin1(name));
            const QVariantMap slide = layer->property("slide").toMap();
            if (slide.value(QStringLiteral("id")).toString() == wanted) {
                const double opacity = layer->isVisible() ? layer->opacity() : 0.0;
                // Where the layer's centre is drawn: scale and turn keep it in place, the offset moves it.
                const double x = layer->mapToScene(QPointF(kWidth / 2, kHeight / 2)).x() - kWidth / 2;
                return {opacity, layer->property("layerScale").toDouble(), x, layer->property("turn").toDouble()};
            }
        }
        ADD_FAILURE() << "no layer shows item " << index;
        return {};
    }
};

// The incoming and the outgoing layer at progress p.
std::pair<Layer, Layer> expectedLayers(TransitionStyle style, bool backward, double p)
{
    const double side = backward ? -kWidth : kWidth; // a forward slide comes in from the right
    switch (style) {
    case TransitionStyle::slide:
        return {{1, 1, side * (1 - p), 0}, {1, 1, -side * p, 0}};
    case TransitionStyle::zoom:
        return {{p, 1 + (1 - p) * 0.08, 0, 0}, {1 - p, 1, 0, 0}};
    case TransitionStyle::flip:
        return {{p >= 0.5 ? 1.0 : 0.0, 1, 0, (1 - p) * 90}, {p < 0.5 ? 1.0 : 0.0, 1, 0, -p * 90}};
    default: // a cross-fade
        return {{p, 1, 0, 0}, {1 - p, 1, 0, 0}};
    }
}

TEST(SlideshowImageViews, LayersFollowEveryTransitionStyle)
{
    const std::pair<TransitionStyle, bool> rows[]
        = {{TransitionStyle::crossFade, false}, {TransitionStyle::slide, false}, {TransitionStyle::slide, true},
            {TransitionStyle::zoom, false}, {TransitionStyle::flip, false}};
    for (const auto &[style, backward] : rows) {
        ViewsRig views(style);
        ASSERT_TRUE(views.harness->ok());
        const int from = 0;
        const int to = backward ? 2 : 1;
        backward ? views.model->previous() : views.model->next();
        for (const double seconds : {0.25, 0.3, 0.3}) {
            views.rig.time.advance(seconds);
            ASSERT_TRUE(views.model->isTransitioning());
            const double p = views.model->transitionProgress();
            const Layer in = views.layerShowing(to);
            const Layer out = views.layerShowing(from);
            const auto [wantIn, wantOut] = expectedLayers(style, backward, p);
            const auto where = ::testing::Message()
                << toRaw(style).toStdString() << " backward " << backward << " p " << p;
            EXPECT_NEAR(in.opacity, wantIn.opacity, 1e-6) << where;
            EXPECT_NEAR(in.scale, wantIn.scale, 1e-6) << where;
            EXPECT_NEAR(in.x, wantIn.x, 1e-3) << where;
            EXPECT_NEAR(in.turn, wantIn.turn, 1e-6) << where;
            EXPECT_NEAR(out.opacity, wantOut.opacity, 1e-6) << where;
            EXPECT_NEAR(out.x, wantOut.x, 1e-3) << where;
            EXPECT_NEAR(out.turn, wantOut.turn, 1e-6) << where;
        }
        EXPECT_EQ(views.harness->root()->property("flipping").toBool(), style == TransitionStyle::flip);
        // Once it ends the new slide stands plain and alone.
        views.rig.time.advance(0.5);
        ASSERT_FALSE(views.model->isTransitioning());
        const Layer settled = views.layerShowing(to);
        EXPECT_NEAR(settled.opacity, 1, 1e-9);
        EXPECT_NEAR(settled.scale, 1, 1e-9);
        EXPECT_NEAR(settled.x, 0, 1e-3);
        EXPECT_NEAR(settled.turn, 0, 1e-9);
    }
}

TEST(SlideshowImageViews, KenBurnsDriftsThroughTheHoldAndZoomAppliesToTheCurrentSlide)
{
    ViewsRig views(TransitionStyle::kenBurns);
    ASSERT_TRUE(views.harness->ok());
    views.model->next();
    views.rig.time.advance(1.1);
    ASSERT_FALSE(views.model->isTransitioning());
    const double early = views.layerShowing(1).scale;
    views.rig.time.advance(2);
    const Layer later = views.layerShowing(1);
    EXPECT_GT(later.scale, early);
    EXPECT_NEAR(later.scale, 1 + views.model->kenBurnsProgress() * 0.12, 1e-6);
    const QSizeF v = views.model->kenBurnsVector();
    EXPECT_NEAR(later.x, kWidth * v.width() * 0.04 * views.model->kenBurnsProgress(), 1e-3);

    ViewsRig zoomed(TransitionStyle::none);
    ASSERT_TRUE(zoomed.harness->ok());
    zoomed.model->zoomIn();
    zoomed.model->pan(30, 0);
    const Layer current = zoomed.layerShowing(0);
    EXPECT_NEAR(current.scale, 1.25, 1e-9);
    EXPECT_NEAR(current.x, 30 * (zoomed.model->settings().naturalScrollingForPan ? -1 : 1), 1e-3);
}

TEST(SlideshowImageViews, ThePointerRevealsZoomsAndPans)
{
    ViewsRig views(TransitionStyle::none);
    ASSERT_TRUE(views.harness->ok());
    QQuickWindow &window = views.harness->window();
    QTest::mouseMove(&window, QPoint(400, 300));
    QTest::mouseMove(&window, QPoint(410, 300));
    EXPECT_TRUE(views.model->showControls());

    QWheelEvent notch(QPointF(400, 300), window.mapToGlobal(QPointF(400, 300)), {}, QPoint(0, 120), Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&window, &notch);
    EXPECT_NEAR(views.model->zoomLevel(), 1.15, 1e-9); // 15 degrees at 0.01 each

    QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(400, 300));
    EXPECT_NEAR(views.model->zoomLevel(), 1.0, 1e-9);
    QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(400, 300));
    EXPECT_NEAR(views.model->zoomLevel(), views.model->settings().smartZoomLevel, 1e-9);

    QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(400, 300));
    QTest::mouseMove(&window, QPoint(440, 320));
    QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(440, 320));
    EXPECT_NEAR(std::abs(views.model->zoomOffset().width()), 40, 1e-9);
    EXPECT_NEAR(std::abs(views.model->zoomOffset().height()), 20, 1e-9);
}

TEST(SlideshowImageViews, AVideoReportsItsEndAndAnythingThatFailsLeavesTheShow)
{
    const struct {
        bool video;
        const char *report;
        int shownAfter; // index into the items given
        qsizetype imagesAfter;
    } rows[] = {
        {true, "ended", 1, 3},
        {true, "failed", 1, 2},
        {false, "failed", 1, 2},
        {false, "ended", 0, 3},
    };
    for (const auto &row : rows) {
        QList<ImageItem> items = numberedItems(3);
        if (row.video)
            items[0].setMediaType(MediaType::video);
        ViewsRig views(TransitionStyle::none, items);
        ASSERT_TRUE(views.harness->ok());
        QQuickItem *current = views.harness->find(QStringLiteral("primaryLayer"));
        auto *content = current->findChild<QQuickItem *>(QStringLiteral("content"));
        ASSERT_NE(content, nullptr);
        ASSERT_EQ(views.model->currentIndex(), 0);
        // Only the slide on show is heard.
        EXPECT_FALSE(content->property("muted").toBool());
        if (std::string(row.report) == "ended")
            QMetaObject::invokeMethod(content, "ended");
        else
            QMetaObject::invokeMethod(content, "failed", Q_ARG(QString, QStringLiteral("broken")));
        EXPECT_EQ(views.model->currentItem()->id(), items[row.shownAfter].id()) << row.video << row.report;
        EXPECT_EQ(views.model->images().size(), row.imagesAfter) << row.video << row.report;
    }
}

TEST(SlideshowImageViews, CollageModeDrawsTheWallInsteadOfTheLayers)
{
    ViewsRig views(TransitionStyle::none);
    ASSERT_TRUE(views.harness->ok());
    auto *collage = views.harness->find(QStringLiteral("collage"));
    ASSERT_NE(collage, nullptr);
    const auto layersShown = [&] {
        return views.harness->find(QStringLiteral("primaryLayer"))->isVisible()
            || views.harness->find(QStringLiteral("secondaryLayer"))->isVisible();
    };
    EXPECT_TRUE(layersShown());

    views.model->enterCollage();
    EXPECT_TRUE(collage->property("active").toBool());
    auto *wall = collage->property("item").value<QQuickItem *>();
    ASSERT_NE(wall, nullptr);
    EXPECT_EQ(wall->property("wall").value<QObject *>(), static_cast<QObject *>(views.model->collageWall()));
    EXPECT_FALSE(layersShown());

    views.model->openFromCollage(views.model->images().at(1).id().toString());
    EXPECT_FALSE(collage->property("active").toBool());
    EXPECT_TRUE(layersShown());
}

// Each QML enumeration has a case for every case of the engine's; the styles go by the same names.
TEST(SlideshowEnums, MirrorTheEngineCases)
{
    const QMetaObject &meta = SlideshowEnums::staticMetaObject;
    const QMetaEnum styles = meta.enumerator(meta.indexOfEnumerator("TransitionStyle"));
    for (const TransitionStyle style : allTransitionStyles)
        EXPECT_EQ(QString::fromLatin1(styles.valueToKey(int(style))).toLower(), toRaw(style).toLower());
    const std::pair<const char *, size_t> rows[] = {{"TransitionStyle", allTransitionStyles.size()},
        {"ControlScope", allControlScopes.size()}, {"SortMode", allSortModes.size()},
        {"ImageScalingMode", allImageScalingModes.size()}, {"FileDisplayFormat", allFileDisplayFormats.size()},
        {"CollageLayout", allCollageLayouts.size()}, {"Action", allSlideshowActions.size()}};
    for (const auto &[name, cases] : rows)
        EXPECT_EQ(size_t(meta.enumerator(meta.indexOfEnumerator(name)).keyCount()), cases) << name;
}

} // namespace
} // namespace sorvane
