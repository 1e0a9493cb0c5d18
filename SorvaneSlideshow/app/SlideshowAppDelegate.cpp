#include "app/SlideshowAppDelegate.h"

#include "core/SlideshowLog.h"
#include "platform/DesktopHostShell.h"
#include "platform/GnomeAnimationSetting.h"
#include "platform/LaunchClock.h"
#include "slideshow/DisplaySleepInhibitor.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowManager.h"
#include "slideshow/SlideshowViewModel.h"
#include "views/DecodedMemory.h"
#include "views/FrameIntervalLog.h"
#include "views/SlideImageProviders.h"
#include "views/TransitionFrameWatcher.h"

#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMouseEvent>

#include <cstdio>

namespace sorvane {

namespace {
const QUrl windowComponent(QStringLiteral("qrc:/qt/qml/Sorvane/Slideshow/qml/SlideshowWindow.qml"));
}

SlideshowAppDelegate::SlideshowAppDelegate(Options options, QObject *parent)
    : QObject(parent), m_options(std::move(options)),
      m_stored(m_options.preferencesFolder.isEmpty() ? PreferenceStore::standardFolder() : m_options.preferencesFolder),
      m_bridge(
          m_players.installed(),
          [this](const ExternalVideoPlayer &player, const QString &file) { return m_players.open(player, file); },
          &m_stored),
      m_windows(
          m_qml, windowComponent,
          [this](SlideshowViewModel &viewModel) {
              return QVariantMap {{QStringLiteral("bridge"), QVariant::fromValue<QObject *>(&m_bridge)},
                  {QStringLiteral("windowId"), viewModel.id().toString()}};
          },
          [this](const QUuid &window, const KeyBinding &pressed) {
              return m_bridge.trashQuestionTakes(window.toString(), pressed.key);
          }),
      m_firstPhoto(&LaunchClock::millisecondsSinceProcessStart)
{
    // Qt 6.4 does not look for modules compiled into the program by itself.
    m_qml.addImportPath(QStringLiteral("qrc:/qt/qml"));
    SlideImageProviders::registerAll(m_qml);
    m_host = std::make_unique<DesktopHostShell>(
        m_stored, [this](const ImageItem &item, DesktopHostShell::Answer answer) { confirmTrash(item, answer); },
        &GnomeAnimationSetting::read);
    m_settings = SlideshowSettings::load(m_stored);
    m_options.run.applyTo(m_settings);

    m_manager = std::make_unique<SlideshowManager>(SlideshowManager::Services {
        m_clock, m_timers, runPreferences(), *m_host, m_windows, m_options.inhibitor.get()});
    m_windows.setManager(m_manager.get());
    m_options.run.applyTo(*m_manager->globalSettings());

    connect(m_manager.get(), &SlideshowManager::allStopped, this, [] {
        qCInfo(lcSlideshow, "The last show stopped; quitting");
        QCoreApplication::exit(0);
    });
    connect(m_manager.get(), &SlideshowManager::shortcutsRequested, this,
        [this](const QUuid &id) { m_bridge.showShortcuts(id.toString()); });
    connect(&m_windows, &QuickSlideshowWindowFactory::screenArrived, this, &SlideshowAppDelegate::screenArrived);
    connect(&m_scan, &MediaFolderScan::batchFound, this, &SlideshowAppDelegate::batchFound);
    connect(&m_scan, &MediaFolderScan::finished, this, &SlideshowAppDelegate::scanFinished);
    // Start-up is over: from here decoded pictures give their memory back when freed.
    connect(&m_firstPhoto, &FirstPhotoTrace::shown, this, [] { DecodedMemory::returnLargeBuffersAtOnce(); });
}

SlideshowAppDelegate::~SlideshowAppDelegate()
{
    qApp->removeEventFilter(this);
    m_scan.cancel();
    m_pointer.setHidden(false);
    // The windows go before the engine they draw from.
    m_manager.reset();
}

Preferences &SlideshowAppDelegate::runPreferences()
{
    if (!m_options.run.changesGlobalSettings())
        return m_stored;
    // The run's choices stay in memory: the stored ones are copied there first.
    m_transient = std::make_unique<InMemoryPreferences>();
    for (const QString &key : m_stored.keys()) {
        if (const std::optional<PreferenceValue> value = m_stored.value(key))
            m_transient->setValue(key, *value);
    }
    return *m_transient;
}

void SlideshowAppDelegate::start()
{
    qApp->installEventFilter(this);
    m_pointer.setHidden(true);
    MediaFolderScan::Request request;
    for (const QString &path : std::as_const(m_options.run.paths)) {
        // Said at once: the show plays what there is, but a mistyped path should not go unnoticed.
        if (!QFileInfo::exists(path))
            std::fprintf(stderr, "SorvaneSlideshow: no such file or folder: %s\n", qUtf8Printable(path));
        if (QFileInfo(path).isDir())
            request.folders << path;
        else
            request.files << path;
    }
    m_scan.start(request);
}

void SlideshowAppDelegate::batchFound(const QList<ImageItem> &items)
{
    m_items += items;
    if (!m_launched) {
        launch();
        return;
    }
    // Each window keeps its current item; the new ones join its order.
    m_manager->setItems(m_items);
}

void SlideshowAppDelegate::scanFinished(const MediaFolderScanCounts &counts)
{
    qCInfo(lcSlideshow, "Found %lld photos and %lld videos (%lld folders and %lld files unreadable)", counts.images,
        counts.videos, counts.unreadableFolders, counts.unreadableFiles);
    if (m_items.isEmpty())
        fail(QStringLiteral("Nothing to play: no photos or videos in %1")
                 .arg(m_options.run.paths.join(QStringLiteral(", "))));
}

void SlideshowAppDelegate::launch()
{
    const bool transient = m_options.run.changesSettings();
    const QList<QUuid> ids
        = m_manager->launch(m_options.run.launchRequest(), m_items, m_settings, m_options.run.sortMode(), transient);
    if (ids.isEmpty()) {
        fail(QStringLiteral("No display to show on"));
        return;
    }
    m_launched = true;
    windowsOpened(ids);
    if (ids.size() >= 2 && !SlideshowGlobalSettings::storedMultiMonitorTipShown(m_stored)) {
        m_bridge.showTip(ids.first().toString());
        m_manager->globalSettings()->setHasShownMultiMonitorTip(true);
        // Kept for good even when this run's settings live in memory.
        m_stored.setValue(SlideshowGlobalSettings::hasShownMultiMonitorTipKey, true);
    }
}

// Screenshots on a virtual display with software rendering would only ever show cross-fades;
// SORVANE_TRANSITION_BUDGET=off keeps every style whatever the frame times.
bool SlideshowAppDelegate::transitionBudgetOn()
{
    static const bool on = [] {
        const bool off = qEnvironmentVariable("SORVANE_TRANSITION_BUDGET") == QLatin1String("off");
        if (off)
            qCInfo(lcSlideshow, "The transition frame budget is off (SORVANE_TRANSITION_BUDGET=off)");
        return !off;
    }();
    return on;
}

void SlideshowAppDelegate::windowsOpened(const QList<QUuid> &ids)
{
    for (const QUuid &id : ids) {
        SlideshowViewModel *viewModel = m_manager->viewModel(id);
        QuickSlideshowWindow *window = m_windows.window(id);
        if (!viewModel || !window)
            continue;
        // Parented to the window: it goes when the window goes.
        if (transitionBudgetOn())
            new TransitionFrameWatcher(window->window(), viewModel, m_clock, window->window());
        if (FrameIntervalLog::wanted())
            new FrameIntervalLog(window->window(), viewModel, m_clock, window->window());
        m_firstPhoto.watch(window->window());
        connect(viewModel, &SlideshowViewModel::showControlsChanged, this, [this, viewModel] {
            if (!viewModel->showControls())
                m_pointer.setHidden(true);
        });
    }
}

void SlideshowAppDelegate::screenArrived()
{
    // A show on every display takes the new one too; the manager skips displays that have one.
    if (!m_launched || m_options.run.launchRequest().monitor != SlideshowLaunchRequest::MonitorTarget::all
        || m_manager->activeSlideshowIds().isEmpty())
        return;
    windowsOpened(m_manager->launch(
        m_options.run.launchRequest(), m_items, m_settings, m_options.run.sortMode(), m_options.run.changesSettings()));
}

void SlideshowAppDelegate::confirmTrash(const ImageItem &item, std::function<void(bool)> answer)
{
    const QUuid focused = m_manager->focusedSlideshowId();
    m_bridge.askTrash(focused.toString(), QFileInfo(item.url().toLocalFile()).fileName(), std::move(answer));
}

bool SlideshowAppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseMove && qobject_cast<QWindow *>(watched))
        m_pointer.setHidden(false);
    return QObject::eventFilter(watched, event);
}

void SlideshowAppDelegate::fail(const QString &message)
{
    std::fprintf(stderr, "SorvaneSlideshow: %s\n", qUtf8Printable(message));
    qCWarning(lcSlideshow, "%s", qUtf8Printable(message));
    QCoreApplication::exit(nothingToPlayExitCode);
}

} // namespace sorvane
