#include "app/PlayerAppDelegate.h"

#include "EngineLog.h"
#include "app/PlayerWindows.h"
#include "bundle/BundleReader.h"
#include "bundle/BundleWireValues.h"
#include "collage/CollageSlideshowSettings.h"
#include "core/PlayerCollageWall.h"
#include "core/PlayerControlsController.h"
#include "core/PlayerEngine.h"
#include "core/PlayerLocation.h"
#include "media/BrandOverlay.h"
#include "platform/LaunchClock.h"
#include "slideshow/DisplaySleepInhibitor.h"
#include "slideshow/PreferenceStore.h"
#include "views/BrandLogoCache.h"
#include "views/DecodedMemory.h"
#include "views/FullScreenWindowFactory.h"
#include "views/SlideImageProvider.h"
#include "views/SlideImageProviders.h"
#include "views/SlideModel.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>

namespace sorvane {

namespace {
const QUrl holdingComponent(QStringLiteral("qrc:/qt/qml/Sorvane/Player/qml/HoldingWindow.qml"));

// The player's keys are read by where the digits sit on the keyboard (see PlayerKeyRouter).
std::optional<KeyBinding> placedKey(const QKeyEvent &event)
{
    const std::optional<KeyBinding> pressed = KeyEventBinding::fromKeyEvent(event);
    if (!pressed)
        return std::nullopt;
    return PlayerKeyRouter::placed(*pressed, event.nativeScanCode());
}
} // namespace

PlayerAppDelegate::PlayerAppDelegate(Options options, QObject *parent)
    : QObject(parent), m_options(std::move(options)),
      m_keyRouting(
          PlayerKeyRouter::table(), [this](PlayerAction action) { m_keys.perform(action); }, &placedKey),
      m_resume(ResumeStore::forCurrentUser()),
      m_holdingWindows([this](QScreen *screen, int) { return makeHoldingWindow(screen); }, m_timers)
{
    m_qml.addImportPath(QStringLiteral("qrc:/qt/qml"));
    // Slides and logos are decoded by our own providers, with our limits.
    m_logos = &SlideImageProviders::registerAll(m_qml);
    connectHandlers();
    m_controls = std::make_unique<PlayerControlsController>(
        m_clock, m_timers, [] { return QPointF(QCursor::pos()); }, m_controlsModel);
    connect(&m_controlsModel, &PlayerControlsModel::visibleChanged, this, [this] {
        qCInfo(lcPlayer, m_controlsModel.isVisible() ? "Controls shown" : "Controls hidden");
        // The pointer rests hidden with the panel and comes back with it.
        if (!m_holding)
            m_pointer.setHidden(!m_controlsModel.isVisible());
    });
    connect(&m_controlsModel, &PlayerControlsModel::stripRectChanged, this,
        [this] { m_controls->setStripRect(m_controlsModel.stripRect()); });
    connect(&m_holdingWindows, &ScreenWindows::screensChanged, this, &PlayerAppDelegate::screensChanged);
    connect(&m_holdingWindows, &ScreenWindows::rebuilt, this, &PlayerAppDelegate::logHolding);
    // Filters run newest first: the key routing goes in before the delegate's own filter, so
    // the delegate still notes every key (the walls' input) before a known key is swallowed.
    m_keyRouting.start();
    qApp->installEventFilter(this);
    // Back from another application: the show's windows come forward again, keys included.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive && !QGuiApplication::focusWindow())
            bringForward();
    });
}

void PlayerAppDelegate::bringForward()
{
    QList<QQuickWindow *> windows = m_windows ? m_windows->windows() : QList<QQuickWindow *>();
    windows << m_holdingWindows.windows();
    for (QQuickWindow *window : std::as_const(windows))
        window->raise();
    if (!windows.isEmpty())
        windows.first()->requestActivate();
}

PlayerAppDelegate::~PlayerAppDelegate()
{
    qApp->removeEventFilter(this);
    m_pointer.setHidden(false);
    if (m_engine)
        m_engine->stop();
    m_engine.reset();
    m_windows.reset();
    m_holdingWindows.close();
    if (m_options.inhibitor)
        m_options.inhibitor->release();
}

void PlayerAppDelegate::connectHandlers()
{
    // Keys and panel buttons lead to the same places; both hold the delegate weakly.
    QPointer<PlayerAppDelegate> self(this);
    PlayerActionHandlers handlers;
    handlers.onExit = [self] {
        if (self)
            self->quit();
    };
    handlers.onTogglePause = [self] {
        if (self && self->m_engine)
            self->m_engine->togglePause();
    };
    handlers.onNext = [self] {
        if (self && self->m_engine)
            self->m_engine->next();
    };
    handlers.onPrevious = [self] {
        if (self && self->m_engine)
            self->m_engine->previous();
    };
    handlers.onStyle = [self](PlayerStyle style) {
        if (self && self->m_engine)
            self->m_engine->chooseStyle(style);
    };
    static_cast<PlayerActionHandlers &>(m_keys) = handlers;
    static_cast<PlayerActionHandlers &>(m_controlsModel) = handlers;
}

void PlayerAppDelegate::start()
{
    const PlayerBundleChoice choice
        = PlayerLocation::chooseBundle(m_options.applicationFolder, m_options.bundleArguments);
    qCInfo(lcPlayer, "%s", qUtf8Printable(choice.logLine));
    if (choice.hold) {
        showHolding(nullptr);
        return;
    }
    BundleOpenOptions options;
    // Size checks only: deeper checks read every byte, which takes minutes on a slow stick.
    options.verification = BundleVerification::sizeAndCount;
    BundleOpenResult opened = BundleReader::open(choice.bundleRoot, options);
    if (opened.error || !opened.bundle) {
        qCInfo(lcPlayer, "Bundle could not be opened (%s); holding",
            opened.error ? qUtf8Printable(opened.error->message) : "no bundle");
        showHolding(nullptr);
        return;
    }
    startPlayback(std::move(opened.bundle));
}

void PlayerAppDelegate::quit()
{
    if (m_quitting)
        return;
    m_quitting = true;
    qCInfo(lcPlayer, "Quitting");
    if (m_engine)
        m_engine->stop();
    if (m_windows)
        m_windows->close();
    m_holdingWindows.close();
    if (m_options.inhibitor)
        m_options.inhibitor->release();
    QGuiApplication::quit();
}

void PlayerAppDelegate::showHolding(const OpenedBundleBranding *branding)
{
    m_holding = true;
    m_holdingName = branding && branding->displayName ? *branding->displayName : QString();
    m_holdingLogo = QUrl();
    if (branding && branding->logoURL)
        m_holdingLogo = QUrl(QStringLiteral("image://slide/")
            + SlideImageProvider::imageId(
                branding->logoURL->toLocalFile(), ImageScalingMode::fitToScreen, ImageFilter::none));
    m_controlsModel.setHasShow(false);
    buildHoldingWindows();
    m_pointer.setHidden(true);
}

QQuickWindow *PlayerAppDelegate::makeHoldingWindow(QScreen *screen)
{
    return FullScreenWindowFactory::create(m_qml, holdingComponent, screen,
        {{QStringLiteral("displayName"), m_holdingName}, {QStringLiteral("logoSource"), m_holdingLogo}});
}

void PlayerAppDelegate::buildHoldingWindows()
{
    m_holdingWindows.build();
    logHolding();
}

void PlayerAppDelegate::logHolding() const
{
    qCInfo(lcPlayer, "Holding on %d screen(s)", int(m_holdingWindows.windows().size()));
}

void PlayerAppDelegate::setUpSlides(const OpenedBundle &bundle)
{
    m_slides = std::make_unique<SlideModel>();
    const BundlePlaybackPreferences &playback = bundle.playback;
    SlideAppearance appearance;
    appearance.scaling = toWire(playback.imageScaling);
    // Filters already applied by the writer must not be applied twice.
    const bool baked = bundle.manifest.derivatives && bundle.manifest.derivatives->filtersBakedIn.value_or(false);
    appearance.filter = toWire(baked ? ImageFilter::none : playback.imageFilter);
    appearance.background
        = playback.background == BundleBackground::darkGray ? QColor(0x1c, 0x1c, 0x1e) : QColor(Qt::black);
    appearance.crossfade = playback.crossfadeOrDefault();
    appearance.transitionSeconds = std::clamp(playback.transitionSecondsOrDefault(), 0.0, 10.0);
    appearance.showCaption = playback.showImageInfoOrDefault();
    appearance.showProgress = playback.showProgressOrDefault();
    m_slides->setAppearance(appearance);

    const BrandOverlaySettings overlay = bundle.branding ? bundle.branding->overlay : BrandOverlaySettings();
    if (const auto logo = BrandOverlay::logoImage(overlay, *m_logos)) {
        BrandOverlayView view;
        view.visible = true;
        view.source = BrandLogoCache::urlFor(logo->path);
        view.opacity = overlay.opacity;
        m_slides->setOverlay(view, overlay, logo->size);
    }

    connect(m_slides.get(), &SlideModel::failed, this, [this](int, const QString &reason) {
        qCInfo(lcPlayer, "Could not show %s: %s", qUtf8Printable(m_slides->slide().source.toLocalFile()),
            qUtf8Printable(reason));
    });
    // Queued: a view may report while the engine is still handling the previous
    // report (a cached failure comes back at once), and a report must never be lost.
    connect(
        m_slides.get(), &SlideModel::ended, this,
        [this](int serial) {
            if (m_engine && serial == m_slides->slide().serial)
                m_engine->videoEnded();
        },
        Qt::QueuedConnection);
    connect(
        m_slides.get(), &SlideModel::failed, this,
        [this](int serial) {
            if (m_engine && serial == m_slides->slide().serial)
                m_engine->videoFailed();
        },
        Qt::QueuedConnection);
    connect(m_slides.get(), &SlideModel::presented, this, [this] {
        if (!m_anyPresented) {
            m_anyPresented = true;
            firstPhotoPresented();
        }
    });
}

void PlayerAppDelegate::startPlayback(std::shared_ptr<OpenedBundle> bundle)
{
    m_holding = false;
    m_bundle = bundle;
    m_pointer.setHidden(true);
    setUpSlides(*bundle);
    // The viewer's own collage settings are read, never written: the bundle's go on top, in memory.
    const PreferenceStore viewerPreferences(PreferenceStore::standardFolder());
    m_walls = std::make_unique<PlayerCollageWall>(
        *bundle, CollageSlideshowSettings::load(viewerPreferences), m_clock, m_timers);
    connect(m_walls.get(), &PlayerCollageWall::openItem, this, [this](const QString &itemId) {
        qCInfo(lcPlayer, "Opening item %s from the wall", qUtf8Printable(itemId));
        if (m_engine)
            m_engine->openFromWall(itemId);
    });
    connect(m_walls.get(), &PlayerCollageWall::firstTileShown, this, [this] {
        if (!m_anyPresented) {
            m_anyPresented = true;
            firstPhotoPresented();
        }
    });
    m_windows = std::make_unique<PlayerWindows>(m_qml, bundle, *m_slides, m_controlsModel, *m_walls, m_timers, [this] {
        if (!m_engine || m_engine->itemCount() == 0)
            return QString();
        return QStringLiteral("%1 of %2").arg(m_engine->position() + 1).arg(m_engine->itemCount());
    });
    connect(&m_windows->screens(), &ScreenWindows::screensChanged, this, &PlayerAppDelegate::screensChanged);
    // The windows are new: the engine presents its style and item on them again.
    connect(&m_windows->screens(), &ScreenWindows::rebuilt, this, [this] {
        if (m_engine)
            m_engine->screensChanged();
    });
    const std::optional<QString> bundleId = bundle->manifest.bundleId;
    PlayerEngine::SaveResume save = [this, bundleId](qint64 position, std::optional<PlayerStyle> chosen) {
        ResumeRecord record;
        record.bundleId = bundleId;
        record.itemIndex = position;
        record.savedUtc = QDateTime::currentDateTimeUtc();
        if (chosen)
            record.style = toRaw(*chosen);
        m_resume.save(record);
    };
    m_engine = std::make_unique<PlayerEngine>(bundle, *m_windows, m_timers, std::move(save));

    connect(m_engine.get(), &PlayerEngine::pausedChanged, this, [this] {
        m_controlsModel.setPaused(m_engine->paused());
        qCInfo(lcPlayer, m_engine->paused() ? "Paused" : "Playing");
    });
    connect(m_engine.get(), &PlayerEngine::styleChanged, this, [this] {
        m_controlsModel.setStyle(m_engine->style());
        qCInfo(lcPlayer, "Style %s", qUtf8Printable(m_engine->styleRaw()));
    });
    connect(m_engine.get(), &PlayerEngine::itemCountChanged, this, [this] {
        // Every file failed before one was ever seen: nothing to show but the holding screen.
        if (m_engine->itemCount() == 0 && !m_anyPresented && !m_holding) {
            qCInfo(lcPlayer, "Nothing in the bundle could be shown; holding");
            m_engine->stop();
            m_windows->close();
            if (m_options.inhibitor)
                m_options.inhibitor->release();
            showHolding(m_bundle->branding ? &*m_bundle->branding : nullptr);
        }
    });

    PlayerEngine::Start resume;
    if (const auto record = m_resume.load(bundleId)) {
        resume.resumePosition = record->itemIndex;
        if (record->style)
            resume.resumeStyle = playerStyleFromRaw(*record->style);
    }
    m_controlsModel.setHasShow(true);
    m_controlsModel.setStyle(resume.resumeStyle.value_or(PlayerStyle::classic));
    if (m_options.inhibitor)
        m_options.inhibitor->inhibit();
    m_engine->start(resume);
}

void PlayerAppDelegate::firstPhotoPresented()
{
    // Start-up is over: from here decoded pictures give their memory back when freed.
    DecodedMemory::returnLargeBuffersAtOnce();
    const QList<QQuickWindow *> windows = m_windows ? m_windows->windows() : QList<QQuickWindow *>();
    if (windows.isEmpty())
        return;
    // The photo is on screen once the frame holding it has been swapped in.
    connect(
        windows.first(), &QQuickWindow::frameSwapped, this,
        [] { qCInfo(lcPlayer, "First photo on screen after %lld ms", LaunchClock::millisecondsSinceProcessStart()); },
        Qt::SingleShotConnection);
    windows.first()->update();
}

void PlayerAppDelegate::screensChanged()
{
    qCInfo(lcPlayer, "Screens changed: %d screen(s)", int(QGuiApplication::screens().size()));
}

bool PlayerAppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        if (m_walls && qobject_cast<QWindow *>(watched))
            m_walls->noteInput();
        break;
    }
    case QEvent::MouseMove:
        if (m_holding && qobject_cast<QWindow *>(watched))
            m_pointer.setHidden(false);
        else if (qobject_cast<QWindow *>(watched))
            m_controls->pointerMoved(static_cast<QMouseEvent *>(event)->globalPosition());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sorvane
