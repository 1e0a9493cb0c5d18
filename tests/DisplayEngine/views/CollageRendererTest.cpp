// The collage wall's view over a real wall model and real thumbnails, in an offscreen window:
// where the Varied tiles go, what happens to a photo that will not decode, and the tile menu.
#include "QuickItems.h"
#include "TestImages.h"

#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageVariedTemplate.h"
#include "collage/CollageWallModel.h"
#include "media/ThumbnailCache.h"
#include "slideshow/InMemoryPreferences.h"
#include "support/FakeTime.h"
#include "views/CollageImageProvider.h"
#include "views/QtThumbnailDecoder.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace sorvane {
namespace {

bool isTile(QQuickItem *item)
{
    return QByteArray(item->metaObject()->className()).startsWith("CollageTileView");
}

// A Varied wall of five photos and one file that is not a photo, drawn at `size`.
class RendererScene {
public:
    explicit RendererScene(QSize size)
    {
        static const bool software = [] {
            QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
            return true;
        }();
        (void)software;

        QList<ImageItem> pool;
        for (int i = 0; i < 5; ++i)
            pool.append(ImageItem(
                write(QStringLiteral("photo %1.png").arg(i), test::encoded(test::halves({400, 300}), "PNG"))));
        broken = ImageItem(write(QStringLiteral("broken.jpg"), "not a photo"));
        pool.append(broken);

        store.setShuffleVariedLayout(false);
        store.setImageChangeInterval(1000);
        model.setSettingsStore(&store);
        model.setLayout(CollageLayout::collage);
        model.setPool(pool, 1);

        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        engine.addImageProvider(CollageImageProvider::kProviderName,
            new CollageImageProvider(std::make_shared<ThumbnailCache>(std::make_shared<QtThumbnailDecoder>())));
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Sorvane.Views\nCollageRenderer {}\n",
            QUrl(QStringLiteral("qrc:/collage-renderer-test/Scene.qml")));
        root.reset(qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{QStringLiteral("wall"), QVariant::fromValue<QObject *>(&model)}})));
        if (!root) {
            ADD_FAILURE() << component.errorString().toStdString();
            return;
        }
        window.resize(size);
        root->setSize(size);
        root->setParentItem(window.contentItem());
        window.show();
        QCoreApplication::processEvents();
    }

    QUrl write(const QString &name, const QByteArray &bytes)
    {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return QUrl::fromLocalFile(file.fileName());
    }

    std::vector<QQuickItem *> tiles() const { return visibleItems(root.get(), isTile); }

    // Thumbnails arrive from worker threads; wait (bounded) until every tile has its photo.
    bool allTilesShowPhotos()
    {
        return QTest::qWaitFor(
            [&] {
                (void)window.grabWindow();
                const auto shown = tiles();
                return shown.size() == size_t(CollageVariedTemplate::slotCount)
                    && std::all_of(
                        shown.cbegin(), shown.cend(), [](QQuickItem *t) { return t->property("ready").toBool(); });
            },
            10000);
    }

    QTemporaryDir dir;
    test::FakeTime time;
    InMemoryPreferences preferences;
    CollageSlideshowSettingsStore store {preferences};
    CollageWallModel model {time, time, 3};
    ImageItem broken {QUrl()};
    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> root;
};

TEST(CollageRenderer, VariedTilesFillTheTemplateAndAPhotoThatFailsLeavesNoHole)
{
    for (const QSize size : {QSize(1600, 900), QSize(900, 1600)}) {
        SCOPED_TRACE(size.width() > size.height() ? "landscape" : "portrait");
        RendererScene scene(size);
        ASSERT_TRUE(scene.root);
        ASSERT_TRUE(scene.model.isRunning()) << "the view starts its wall";
        ASSERT_TRUE(scene.allTilesShowPhotos());
        EXPECT_FALSE(scene.model.wallState().slots.contains(scene.broken.id()));

        // Each slot's rectangle of the template, on its side on a portrait screen, 6 points apart.
        const double gap = 6;
        const QList<QRectF> rects = CollageVariedTemplate::variant(scene.model.variantIndex());
        QList<QRectF> expected;
        for (QRectF unit : rects) {
            if (size.height() > size.width())
                unit = QRectF(unit.y(), unit.x(), unit.height(), unit.width());
            expected << QRectF(gap + unit.x() * (size.width() - gap), gap + unit.y() * (size.height() - gap),
                unit.width() * (size.width() - gap) - gap, unit.height() * (size.height() - gap) - gap);
        }
        QList<QRectF> drawn;
        for (QQuickItem *tile : scene.tiles())
            drawn << tile->mapRectToScene(QRectF(0, 0, tile->width(), tile->height()));
        EXPECT_EQ(drawn, expected);
    }
}

TEST(CollageRenderer, TheTileMenuHoldsTheWallAndOpensThePhoto)
{
    RendererScene scene({1280, 720});
    ASSERT_TRUE(scene.root);
    ASSERT_TRUE(scene.allTilesShowPhotos());
    QList<QUuid> opened;
    QObject::connect(&scene.model, &CollageWallModel::drillIn, [&](const QUuid &id) { opened << id; });

    QQuickItem *tile = scene.tiles()[2];
    QTest::mouseClick(
        &scene.window, Qt::RightButton, {}, tile->mapToScene(QPointF(tile->width() / 2, tile->height() / 2)).toPoint());
    (void)scene.window.grabWindow();
    EXPECT_TRUE(scene.model.isMenuOpen());

    const auto rows = visibleItems(scene.root.get(), [](QQuickItem *item) {
        return item->property("text").toString() == QStringLiteral("Open in a full slideshow");
    });
    ASSERT_EQ(rows.size(), 1u);
    QTest::mouseClick(&scene.window, Qt::LeftButton, {},
        rows.front()->mapToScene(QPointF(rows.front()->width() / 2, rows.front()->height() / 2)).toPoint());
    EXPECT_FALSE(scene.model.isMenuOpen());
    EXPECT_EQ(opened, QList<QUuid> {scene.model.wallState().slots[2]});
    EXPECT_FALSE(scene.model.isRunning()) << "the wall was captured for the return";
}

} // namespace
} // namespace sorvane
