#include "app/PlayerWindows.h"

#include "EngineLog.h"
#include "app/PlayerSlideModel.h"
#include "app/PlayerWindowFactory.h"
#include "bundle/BundleFormat.h"
#include "bundle/OpenedBundle.h"
#include "collage/CollageWallModel.h"
#include "core/PlayerCaption.h"
#include "core/PlayerCollageWall.h"
#include "core/PlayerControlsModel.h"

#include <QGuiApplication>
#include <QScreen>

namespace sorvane {

namespace {
const QUrl windowComponent(QStringLiteral("qrc:/qt/qml/Sorvane/Player/qml/PlayerWindow.qml"));
}

PlayerWindows::PlayerWindows(QQmlEngine &engine, std::shared_ptr<OpenedBundle> bundle, PlayerSlideModel &slides,
    PlayerControlsModel &controls, PlayerCollageWall &walls, ProgressText progress)
    : m_engine(engine), m_bundle(std::move(bundle)), m_slides(slides), m_controls(controls), m_walls(walls),
      m_progress(std::move(progress))
{
}

PlayerWindows::~PlayerWindows()
{
    close();
}

void PlayerWindows::show(const PlayerShownAsset &asset)
{
    PlayerSlide slide;
    slide.source = asset.url;
    slide.isVideo = asset.isVideo;
    slide.isAnimated = asset.isAnimated;
    if (const BundleMediaItem *item = m_bundle->item(asset.itemId)) {
        // A video's still stands in until its first frame, so there is no black gap.
        if (asset.isVideo) {
            if (const BundleResolvedAsset *poster = item->resolvedAsset(BundleFormat::tierFull))
                slide.posterSource = poster->url();
        }
        slide.caption
            = PlayerCaption::text(item->raw.sourceName, asset.url.toLocalFile(), m_bundle->playback.fileDisplayFormat);
    }
    if (m_progress)
        slide.progress = m_progress();
    qCInfo(lcPlayer, "Showing item %s (%s)%s%s", qUtf8Printable(asset.itemId), qUtf8Printable(asset.tier),
        slide.progress.isEmpty() ? "" : ", ", qUtf8Printable(slide.progress));
    m_slides.setSlide(std::move(slide));
}

void PlayerWindows::pauseVideo()
{
    m_slides.setPaused(true);
    m_walls.setPaused(true);
}

void PlayerWindows::resumeVideo()
{
    m_slides.setPaused(false);
    m_walls.setPaused(false);
}

void PlayerWindows::presentStyle(PlayerStyle style)
{
    if (m_rebuild || windows().isEmpty())
        build(style);
    else
        showWalls(style);
}

void PlayerWindows::stepWall(int step)
{
    m_walls.step(step);
}

void PlayerWindows::showWalls(PlayerStyle style)
{
    const QList<QQuickWindow *> live = windows();
    const QList<CollageWallModel *> walls = m_walls.wallsFor(style, int(live.size()));
    if (!walls.isEmpty()) {
        // Nothing of the classic style plays on behind a wall.
        m_slides.setSlide(PlayerSlide());
        m_slides.setPreloadSource(QUrl());
        qCInfo(lcPlayer, "Wall %s on %d screen(s)", qUtf8Printable(walls.first()->layoutName()), int(walls.size()));
    }
    for (qsizetype index = 0; index < live.size(); ++index)
        live[index]->setProperty("wall", QVariant::fromValue(static_cast<QObject *>(walls.value(index))));
}

void PlayerWindows::preload(const PlayerShownAsset &asset)
{
    // Only stills are decoded ahead; a video's player starts with its show.
    m_slides.setPreloadSource(asset.isVideo || asset.isAnimated ? QUrl() : asset.url);
}

QList<QQuickWindow *> PlayerWindows::windows() const
{
    QList<QQuickWindow *> live;
    for (const auto &window : m_windows)
        if (window)
            live << window.data();
    return live;
}

void PlayerWindows::close()
{
    for (const auto &window : std::as_const(m_windows)) {
        if (window) {
            window->hide();
            window->deleteLater();
        }
    }
    m_windows.clear();
}

void PlayerWindows::build(PlayerStyle style)
{
    close();
    m_rebuild = false;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (qsizetype index = 0; index < screens.size(); ++index) {
        QQuickWindow *window = PlayerWindowFactory::create(m_engine, windowComponent, screens[index],
            {{QStringLiteral("slides"), QVariant::fromValue(&m_slides)},
                {QStringLiteral("controls"), QVariant::fromValue(&m_controls)},
                {QStringLiteral("walls"), QVariant::fromValue(static_cast<QObject *>(&m_walls))},
                // One screen speaks; the others play their copy muted.
                {QStringLiteral("primary"), index == 0}});
        if (window)
            m_windows << window;
    }
    if (!m_windows.isEmpty() && m_windows.first())
        m_windows.first()->requestActivate();
    qCInfo(lcPlayer, "Playing on %d screen(s)", int(m_windows.size()));
    showWalls(style);
}

} // namespace sorvane
