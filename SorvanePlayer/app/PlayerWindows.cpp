#include "app/PlayerWindows.h"

#include "EngineLog.h"
#include "bundle/BundleFormat.h"
#include "bundle/OpenedBundle.h"
#include "collage/CollageWallModel.h"
#include "core/PlayerCaption.h"
#include "core/PlayerCollageWall.h"
#include "core/PlayerControlsModel.h"
#include "views/FullScreenWindowFactory.h"
#include "views/SlideModel.h"

namespace sorvane {

namespace {
const QUrl windowComponent(QStringLiteral("qrc:/qt/qml/Sorvane/Player/qml/PlayerWindow.qml"));
}

PlayerWindows::PlayerWindows(QQmlEngine &engine, std::shared_ptr<OpenedBundle> bundle, SlideModel &slides,
    PlayerControlsModel &controls, PlayerCollageWall &walls, TimerScheduler &timers, ProgressText progress)
    : m_engine(engine), m_bundle(std::move(bundle)), m_slides(slides), m_controls(controls), m_walls(walls),
      m_progress(std::move(progress)),
      m_screens([this](QScreen *screen, int index) { return makeWindow(screen, index); }, timers)
{
    QObject::connect(&m_screens, &ScreenWindows::rebuilt, &m_screens, [this] { logScreens(); });
}

PlayerWindows::~PlayerWindows()
{
    close();
}

QQuickWindow *PlayerWindows::makeWindow(QScreen *screen, int index)
{
    return FullScreenWindowFactory::create(m_engine, windowComponent, screen,
        {{QStringLiteral("slides"), QVariant::fromValue(&m_slides)},
            {QStringLiteral("controls"), QVariant::fromValue(&m_controls)},
            {QStringLiteral("walls"), QVariant::fromValue(static_cast<QObject *>(&m_walls))},
            // One screen speaks; the others play their copy muted.
            {QStringLiteral("primary"), index == 0}});
}

void PlayerWindows::show(const PlayerShownAsset &asset)
{
    Slide slide;
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
    if (windows().isEmpty())
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
        m_slides.setSlide(Slide());
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

void PlayerWindows::build(PlayerStyle style)
{
    m_screens.build();
    logScreens();
    showWalls(style);
}

void PlayerWindows::logScreens() const
{
    qCInfo(lcPlayer, "Playing on %d screen(s)", int(windows().size()));
}

} // namespace sorvane
