// The central slideshow view over a real view model on fake time: where each layer stands at
// points of every transition, the Ken Burns drift through the hold, zoom and pan, and the
// engine's enumerations as QML compares them.
#include "DisplayEngine/slideshow/SlideshowTestHost.h"
#include "QmlHarness.h"

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

// The slideshow view over a running model of three local stills.
class ViewsRig {
public:
    explicit ViewsRig(TransitionStyle style, double transitionDuration = 1.0)
    {
        SlideshowSettings settings;
        settings.transitionStyle = style;
        settings.transitionDuration = transitionDuration;
        settings.defaultDuration = 5;
        model = rig.make(numberedItems(3), settings);
        model->start();
        harness = std::make_unique<QmlHarness>(QSize(kWidth, kHeight),
            QStringLiteral("SlideshowImageViews { property bool flipping: viewModel.activeTransitionStyle === "
                           "Slideshow.TransitionStyle.Flip }"),
            QVariantMap {{QStringLiteral("viewModel"), QVariant::fromValue(model.get())}});
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
                return {opacity, layer->property("layerScale").toDouble(), layer->property("offsetX").toDouble(),
                    layer->property("turn").toDouble()};
            }
        }
        ADD_FAILURE() << "no layer shows item " << index;
        return {};
    }

    SlideshowRig rig;
    std::unique_ptr<SlideshowViewModel> model;
    std::unique_ptr<QmlHarness> harness;
};

TEST(SlideshowImageViews, LayersFollowEveryTransitionStyle)
{
    constexpr double w = kWidth;
    const struct {
        TransitionStyle style;
        bool backward;
        // The incoming and the outgoing layer at progress p.
        Layer (*incoming)(double p);
        Layer (*outgoing)(double p);
    } rows[] = {
        {TransitionStyle::crossFade, false,
            [](double p) {
                return Layer {p, 1, 0, 0};
            },
            [](double p) {
                return Layer {1 - p, 1, 0, 0};
            }},
        {TransitionStyle::slide, false,
            [](double p) {
                return Layer {1, 1, w * (1 - p), 0};
            },
            [](double p) {
                return Layer {1, 1, -w * p, 0};
            }},
        {TransitionStyle::slide, true,
            [](double p) {
                return Layer {1, 1, -w * (1 - p), 0};
            },
            [](double p) {
                return Layer {1, 1, w * p, 0};
            }},
        {TransitionStyle::zoom, false,
            [](double p) {
                return Layer {p, 1 + (1 - p) * 0.08, 0, 0};
            },
            [](double p) {
                return Layer {1 - p, 1, 0, 0};
            }},
        {TransitionStyle::flip, false,
            [](double p) {
                return Layer {p >= 0.5 ? 1.0 : 0.0, 1, 0, (1 - p) * 90};
            },
            [](double p) {
                return Layer {p < 0.5 ? 1.0 : 0.0, 1, 0, -p * 90};
            }},
    };
    for (const auto &row : rows) {
        ViewsRig views(row.style);
        ASSERT_TRUE(views.harness->ok());
        const int from = 0;
        const int to = row.backward ? 2 : 1;
        row.backward ? views.model->previous() : views.model->next();
        for (const double seconds : {0.25, 0.3, 0.3}) {
            views.rig.time.advance(seconds);
            ASSERT_TRUE(views.model->isTransitioning());
            const double p = views.model->transitionProgress();
            const Layer in = views.layerShowing(to);
            const Layer out = views.layerShowing(from);
            const Layer wantIn = row.incoming(p);
            const Layer wantOut = row.outgoing(p);
            const auto where = ::testing::Message()
                << toRaw(row.style).toStdString() << " backward " << row.backward << " p " << p;
            EXPECT_NEAR(in.opacity, wantIn.opacity, 1e-6) << where;
            EXPECT_NEAR(in.scale, wantIn.scale, 1e-6) << where;
            EXPECT_NEAR(in.x, wantIn.x, 1e-6) << where;
            EXPECT_NEAR(in.turn, wantIn.turn, 1e-6) << where;
            EXPECT_NEAR(out.opacity, wantOut.opacity, 1e-6) << where;
            EXPECT_NEAR(out.x, wantOut.x, 1e-6) << where;
            EXPECT_NEAR(out.turn, wantOut.turn, 1e-6) << where;
        }
        EXPECT_EQ(views.harness->root()->property("flipping").toBool(), row.style == TransitionStyle::flip);
        // Once it ends the new slide stands plain and alone.
        views.rig.time.advance(0.5);
        ASSERT_FALSE(views.model->isTransitioning());
        const Layer settled = views.layerShowing(to);
        EXPECT_NEAR(settled.opacity, 1, 1e-9);
        EXPECT_NEAR(settled.scale, 1, 1e-9);
        EXPECT_NEAR(settled.x, 0, 1e-9);
        EXPECT_NEAR(settled.turn, 0, 1e-9);
    }
}

TEST(SlideshowImageViews, TheSlideMovesOnScreenNotOnlyInItsProperties)
{
    ViewsRig views(TransitionStyle::slide);
    ASSERT_TRUE(views.harness->ok());
    views.model->next();
    views.rig.time.advance(0.5);
    const double p = views.model->transitionProgress();
    QQuickItem *incoming = views.harness->find(
        views.model->isPrimaryLayerActive() ? QStringLiteral("secondaryLayer") : QStringLiteral("primaryLayer"));
    EXPECT_NEAR(incoming->mapToScene(QPointF(0, 0)).x(), kWidth * (1 - p), 1e-3);
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
    EXPECT_NEAR(later.x, kWidth * v.width() * 0.04 * views.model->kenBurnsProgress(), 1e-6);

    ViewsRig zoomed(TransitionStyle::none);
    ASSERT_TRUE(zoomed.harness->ok());
    zoomed.model->zoomIn();
    zoomed.model->pan(30, 0);
    const Layer current = zoomed.layerShowing(0);
    EXPECT_NEAR(current.scale, 1.25, 1e-9);
    EXPECT_NEAR(current.x, 30 * (zoomed.model->settings().naturalScrollingForPan ? -1 : 1), 1e-9);
}

// Each QML enumeration has a case for every case of the engine's, by the same name.
TEST(SlideshowEnums, MirrorTheEngineCases)
{
    const QMetaObject &meta = SlideshowEnums::staticMetaObject;
    const QMetaEnum styles = meta.enumerator(meta.indexOfEnumerator("TransitionStyle"));
    ASSERT_EQ(styles.keyCount(), int(allTransitionStyles.size()));
    for (const TransitionStyle style : allTransitionStyles) {
        QString name = QString::fromLatin1(styles.valueToKey(int(style)));
        name[0] = name[0].toLower();
        EXPECT_EQ(name, toRaw(style));
    }
    const struct {
        const char *name;
        size_t cases;
    } rows[] = {{"ControlScope", allControlScopes.size()}, {"SortMode", allSortModes.size()},
        {"ImageScalingMode", allImageScalingModes.size()}, {"FileDisplayFormat", allFileDisplayFormats.size()},
        {"CollageLayout", allCollageLayouts.size()}, {"Action", allSlideshowActions.size()}};
    for (const auto &row : rows) {
        const QMetaEnum e = meta.enumerator(meta.indexOfEnumerator(row.name));
        ASSERT_TRUE(e.isValid()) << row.name;
        EXPECT_EQ(size_t(e.keyCount()), row.cases) << row.name;
        for (int i = 0; i < e.keyCount(); ++i)
            EXPECT_EQ(e.value(i), i) << row.name;
    }
}

} // namespace
} // namespace sorvane
