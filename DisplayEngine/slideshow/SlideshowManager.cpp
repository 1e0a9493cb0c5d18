#include "slideshow/SlideshowManager.h"

#include "EngineLog.h"
#include "collage/CollageCoordinator.h"
#include "collage/CollageWallModel.h"
#include "slideshow/Clock.h"
#include "slideshow/DisplaySleepInhibitor.h"
#include "slideshow/ImageClaimTracker.h"
#include "slideshow/PhasedAdvances.h"
#include "slideshow/SlideshowActionDispatch.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowScreenPlan.h"
#include "slideshow/SlideshowViewModel.h"
#include "slideshow/SlideshowWindowFactory.h"
#include "slideshow/TimedNotice.h"

#include <QRandomGenerator>

#include <algorithm>

namespace sorvane {

namespace {

QString filterNotice(ImageFilter filter)
{
    switch (filter) {
    case ImageFilter::none:
        return QStringLiteral("Filter: Off");
    case ImageFilter::blackAndWhite:
        return QStringLiteral("Filter: Black & White");
    case ImageFilter::sepia:
        return QStringLiteral("Filter: Sepia");
    case ImageFilter::vintage:
        return QStringLiteral("Filter: Vintage");
    }
    return {};
}

} // namespace

struct SlideshowManager::State {
    State(Services services, SlideshowManager &owner)
        : services(services), global(services.preferences), appliedScope(global.controlScope()),
          scopeNotice(services.timers, noticeDuration, [&owner] { Q_EMIT owner.scopeChangeMessageChanged(); }),
          filterNotice(services.timers, noticeDuration, [&owner] { Q_EMIT owner.filterChangeMessageChanged(); }),
          phased(services.timers)
    {
    }

    Services services;
    SlideshowGlobalSettings global;
    ControlScope appliedScope;
    std::shared_ptr<ImageClaimTracker> claims = std::make_shared<ImageClaimTracker>();
    CollageCoordinator coordinator;
    QHash<QUuid, ManagedSlideshow> active;
    QList<QUuid> order; // launch order: the first display's window first
    QUuid focused;
    QUuid leader;
    TimedNotice scopeNotice;
    TimedNotice filterNotice;
    PhasedAdvances phased;
    bool inhibiting = false;
    // Closed windows live until the run loop comes back, so that a window closed from
    // inside its own key handling is not destroyed under it.
    QList<ManagedSlideshow> retired;
    std::optional<TimerScheduler::TimerId> retireTimer;
};

SlideshowManager::SlideshowManager(Services services, QObject *parent)
    : QObject(parent), d(std::make_unique<State>(services, *this))
{
    connect(&d->global, &SlideshowGlobalSettings::controlScopeChanged, this, [this] {
        if (d->appliedScope != d->global.controlScope())
            applyScope();
    });
}

SlideshowManager::~SlideshowManager()
{
    d->phased.cancelAll();
    if (d->retireTimer)
        d->services.timers.cancel(*d->retireTimer);
    for (const ManagedSlideshow &slideshow : std::as_const(d->active)) {
        disconnect(slideshow.viewModel.get(), nullptr, this, nullptr);
        slideshow.viewModel->stop();
    }
    if (d->inhibiting && d->services.sleepInhibitor)
        d->services.sleepInhibitor->release();
}

double SlideshowManager::phaseStep(int windows, double interval, bool divideEvenly, double phaseDelay)
{
    if (windows < 2)
        return 0.0;
    const double even = interval / windows;
    return divideEvenly ? even : std::min(even, phaseDelay);
}

QString SlideshowManager::scopeNotice(ControlScope scope)
{
    switch (scope) {
    case ControlScope::focusedOnly:
        return QStringLiteral("Independent Mode: Each slideshow advances separately");
    case ControlScope::all:
        return QStringLiteral("Linked Mode: Slideshows advance together but play different images");
    case ControlScope::mirrored:
        return QStringLiteral("Mirror Mode: All slideshows show the same image");
    }
    return {};
}

QList<QUuid> SlideshowManager::launch(const SlideshowLaunchRequest &request, const QList<ImageItem> &items,
    const SlideshowSettings &settings, SortMode sortMode, bool transientSettings)
{
    SlideshowScreenPlan::Input plan;
    plan.target = request.monitor;
    plan.screens = d->services.windows.screens();
    plan.currentScreenId = d->services.windows.currentScreenId();
    plan.firstScreenId = d->global.firstMonitorScreenID();
    plan.limitToScreenCount = settings.limitSlideshowsToMonitorCount;
    plan.running = d->active.size();
    for (const ManagedSlideshow &slideshow : std::as_const(d->active)) {
        if (slideshow.screen)
            plan.occupied.insert(slideshow.screen->id);
    }

    const SlideshowViewModel::Services viewServices {
        d->services.clock, d->services.timers, d->services.preferences, d->services.host};
    QList<QUuid> opened;
    for (const SlideshowScreen &screen : SlideshowScreenPlan::screensToOpen(plan)) {
        const bool secondary = !d->order.isEmpty();
        auto viewModel = std::make_shared<SlideshowViewModel>(viewServices, items, settings,
            secondary ? settings.secondarySlideshowSortMode : sortMode, QRandomGenerator::global()->generate64());
        viewModel->setUseTransientSettings(transientSettings);
        viewModel->setManager(this, d->claims);
        viewModel->setCoordinated(d->appliedScope != ControlScope::focusedOnly);
        std::unique_ptr<SlideshowWindowController> window = d->services.windows.createWindow(*viewModel, screen);
        if (!window) {
            qCWarning(lcEngine) << "No slideshow window could be made on display" << screen.name;
            continue;
        }
        ManagedSlideshow slideshow {
            viewModel->id(), viewModel, std::move(window), std::nullopt, {}, d->services.clock.nowUtc()};
        slideshow.screen = slideshow.windowController->screen().value_or(screen);
        d->active.insert(slideshow.id, slideshow);
        d->order.append(slideshow.id);
        opened.append(slideshow.id);
        // Watched before the wall appears, so that it joins the coordinator unbuilt.
        watch(*viewModel);

        if (request.mode == SlideshowLaunchRequest::Mode::collage) {
            viewModel->setCollageLayout(request.layout.value_or(CollageLayout::collage));
            viewModel->enterCollage();
        }
        if (secondary && settings.secondarySlideshowStartsPaused)
            viewModel->setPaused(true);
        viewModel->setFullScreen(settings.alwaysStartFullScreen);
        slideshow.windowController->show(settings.alwaysStartFullScreen);
        viewModel->start();
    }
    if (opened.isEmpty())
        return {};

    if (!d->inhibiting && d->services.sleepInhibitor)
        d->services.sleepInhibitor->inhibit();
    d->inhibiting = true;
    if (d->focused.isNull())
        setFocused(opened.first());
    if (d->appliedScope == ControlScope::mirrored && d->leader.isNull()) {
        setMirrorLeader(d->focused);
    } else {
        // New windows join the walls' roles and, when mirrored, show the leader's item.
        applyCollageRoles();
        mirrorLeaderShown();
    }
    Q_EMIT activeSlideshowsChanged();
    return opened;
}

void SlideshowManager::setItems(const QList<ImageItem> &items)
{
    for (const QUuid &id : std::as_const(d->order))
        viewModel(id)->setImages(items);
    separateSharedFiles();
}

void SlideshowManager::separateSharedFiles()
{
    // Mirrors share on purpose.
    if (d->appliedScope == ControlScope::mirrored
        || !SlideshowGlobalSettings::readDuplicateAvoidance(d->services.preferences))
        return;
    QSet<QUrl> shown;
    for (const QUuid &id : std::as_const(d->order)) {
        SlideshowViewModel *window = viewModel(id);
        const std::optional<ImageItem> item = window->currentItem();
        if (window->displayMode() != DisplayMode::standard || !item)
            continue;
        if (shown.contains(item->url())) {
            window->next();
            // Stepping away let go of the file, which an earlier window still shows.
            d->claims->claim(item->url());
        }
        if (const std::optional<ImageItem> now = window->currentItem())
            shown.insert(now->url());
    }
}

const QHash<QUuid, ManagedSlideshow> &SlideshowManager::activeSlideshows() const
{
    return d->active;
}

QList<QUuid> SlideshowManager::activeSlideshowIds() const
{
    return d->order;
}

SlideshowViewModel *SlideshowManager::viewModel(const QUuid &id) const
{
    const auto it = d->active.constFind(id);
    return it == d->active.cend() ? nullptr : it->viewModel.get();
}

QUuid SlideshowManager::focusedSlideshowId() const
{
    return d->focused;
}

SlideshowGlobalSettings *SlideshowManager::globalSettings() const
{
    return &d->global;
}

QString SlideshowManager::scopeChangeMessage() const
{
    return d->scopeNotice.text();
}

QString SlideshowManager::filterChangeMessage() const
{
    return d->filterNotice.text();
}

quint64 SlideshowManager::filterToastGeneration() const
{
    return d->filterNotice.generation();
}

QUuid SlideshowManager::mirrorLeaderId() const
{
    return d->leader;
}

QList<QUuid> SlideshowManager::pendingPhasedAdvances() const
{
    return d->phased.pending();
}

ImageClaimTracker &SlideshowManager::imageClaimTracker() const
{
    return *d->claims;
}

CollageCoordinator &SlideshowManager::collageCoordinator() const
{
    return d->coordinator;
}

void SlideshowManager::windowFocused(const QUuid &id)
{
    if (d->active.contains(id))
        setFocused(id);
}

void SlideshowManager::windowClosed(const QUuid &id)
{
    if (std::optional<ManagedSlideshow> slideshow = take(id)) {
        retire(std::move(*slideshow));
        announceRemoval();
    }
}

void SlideshowManager::send(SlideshowCommand command)
{
    const QUuid from = !d->focused.isNull() ? d->focused : d->order.value(0);
    if (from.isNull())
        return;
    if (const std::optional<SlideshowAction> action = SlideshowActionDispatch::actionFor(command)) {
        perform(from, *action);
        return;
    }
    // Stop: the focused window alone when independent; linked and mirrored windows
    // play as one show, so they stop together.
    if (d->appliedScope == ControlScope::focusedOnly)
        close(from);
    else
        stopAll();
}

void SlideshowManager::perform(const QUuid &from, SlideshowAction action)
{
    SlideshowViewModel *origin = viewModel(from);
    if (!origin)
        return;
    switch (action) {
    case SlideshowAction::toggleFullScreen: {
        SlideshowWindowController &window = *d->active[from].windowController;
        const bool fullScreen = !window.isFullScreen();
        window.setFullScreen(fullScreen);
        origin->setFullScreen(fullScreen);
        return;
    }
    case SlideshowAction::moveToTrash:
        origin->moveCurrentToTrash();
        return;
    case SlideshowAction::showHelp:
        Q_EMIT shortcutsRequested(from);
        return;
    case SlideshowAction::exit:
        escapePressed(from);
        return;
    default:
        break;
    }

    const QList<QUuid> targets = scopedTargets(from);
    if (targets.isEmpty())
        return;
    if (action == SlideshowAction::nextImage || action == SlideshowAction::previousImage)
        d->phased.cancelAll();
    // Play/pause leaves every reached window in the state the pressing window turns to.
    const SlideshowViewModel *reference = targets.contains(from) ? origin : viewModel(targets.first());
    const bool pause = !reference->isPaused();
    for (const QUuid &id : targets) {
        SlideshowViewModel *target = viewModel(id);
        if (!target)
            continue;
        if (action == SlideshowAction::startStop)
            target->setPaused(pause);
        else
            SlideshowActionDispatch::apply(*target, action);
    }
}

void SlideshowManager::escapePressed(const QUuid &from)
{
    const auto it = d->active.constFind(from);
    if (it == d->active.cend())
        return;
    switch (d->global.escBehavior()) {
    case EscBehavior::stopAll:
        stopAll();
        return;
    case EscBehavior::stopFocused:
        close(from);
        return;
    case EscBehavior::exitFullscreenFirst:
        if (it->windowController->isFullScreen()) {
            it->windowController->setFullScreen(false);
            it->viewModel->setFullScreen(false);
        } else {
            close(from);
        }
        return;
    }
}

void SlideshowManager::setControlScope(ControlScope scope)
{
    d->global.setControlScope(scope);
    if (d->appliedScope != d->global.controlScope())
        applyScope();
}

void SlideshowManager::stopAll()
{
    d->phased.cancelAll();
    const QList<QUuid> ids = d->order;
    if (ids.isEmpty())
        return;
    for (const QUuid &id : ids) {
        if (std::optional<ManagedSlideshow> slideshow = take(id)) {
            slideshow->windowController->close();
            retire(std::move(*slideshow));
        }
    }
    announceRemoval();
}

void SlideshowManager::close(const QUuid &id)
{
    if (std::optional<ManagedSlideshow> slideshow = take(id)) {
        slideshow->windowController->close();
        retire(std::move(*slideshow));
        announceRemoval();
    }
}

void SlideshowManager::watch(SlideshowViewModel &viewModel)
{
    const QUuid id = viewModel.id();
    connect(&viewModel, &SlideshowViewModel::advanceDue, this, [this, id] { advanceDue(id); });
    connect(&viewModel, &SlideshowViewModel::currentIndexChanged, this, [this, id] { imageShown(id); });
    connect(&viewModel, &SlideshowViewModel::imageUpdateTriggerChanged, this, [this, id] { imageShown(id); });
    connect(&viewModel, &SlideshowViewModel::imageFilterChanged, this, [this, id] { filterChanged(id); });
    connect(&viewModel, &SlideshowViewModel::displayModeChanged, this, [this] { applyCollageRoles(); });
}

std::optional<ManagedSlideshow> SlideshowManager::take(const QUuid &id)
{
    const auto it = d->active.find(id);
    if (it == d->active.end())
        return std::nullopt;
    ManagedSlideshow slideshow = *it;
    d->active.erase(it);
    d->order.removeAll(id);
    d->phased.cancel(id);

    SlideshowViewModel &viewModel = *slideshow.viewModel;
    disconnect(&viewModel, nullptr, this, nullptr);
    const std::optional<ImageItem> shown = viewModel.currentItem();
    viewModel.stop();
    if (shown) {
        // The file stays claimed while another window still shows it (a mirror, or
        // fewer files than windows); a wall holds no claim.
        const bool stillShown = std::any_of(d->active.cbegin(), d->active.cend(), [&](const ManagedSlideshow &other) {
            const std::optional<ImageItem> item = other.viewModel->currentItem();
            return other.viewModel->displayMode() == DisplayMode::standard && item && item->url() == shown->url();
        });
        if (stillShown)
            d->claims->claim(shown->url());
        else
            d->claims->release(shown->url());
    }

    if (d->focused == id)
        setFocused(d->order.value(0));
    if (d->leader == id)
        setMirrorLeader(d->appliedScope == ControlScope::mirrored ? d->focused : QUuid());
    return slideshow;
}

void SlideshowManager::retire(ManagedSlideshow slideshow)
{
    d->retired.append(std::move(slideshow));
    if (!d->retireTimer) {
        d->retireTimer = d->services.timers.scheduleOnce(0.0, [this] {
            d->retireTimer.reset();
            // Each window goes before the view model it draws from (member order).
            d->retired.clear();
        });
    }
}

void SlideshowManager::announceRemoval()
{
    if (d->active.isEmpty()) {
        d->phased.cancelAll();
        if (d->inhibiting && d->services.sleepInhibitor)
            d->services.sleepInhibitor->release();
        d->inhibiting = false;
    }
    Q_EMIT activeSlideshowsChanged();
    if (d->active.isEmpty())
        Q_EMIT allStopped();
}

QList<QUuid> SlideshowManager::scopedTargets(const QUuid &from) const
{
    switch (d->appliedScope) {
    case ControlScope::focusedOnly:
        return {from};
    case ControlScope::all:
        return d->order;
    case ControlScope::mirrored:
        return {d->active.contains(d->leader) ? d->leader : from};
    }
    return {};
}

QUuid SlideshowManager::driver() const
{
    const QList<QUuid> stepping = steppingWindows();
    return stepping.isEmpty() ? QUuid() : stepping.first();
}

QList<QUuid> SlideshowManager::steppingWindows() const
{
    // Paused windows keep their slide, a wall has no slide to step, and a video plays
    // to its end (its window then steps itself).
    QList<QUuid> result;
    for (const QUuid &id : std::as_const(d->order)) {
        const SlideshowViewModel *window = viewModel(id);
        if (!window->isPaused() && window->displayMode() == DisplayMode::standard && !window->isHeldByVideo())
            result.append(id);
    }
    return result;
}

void SlideshowManager::advanceDue(const QUuid &id)
{
    SlideshowViewModel *due = viewModel(id);
    if (!due)
        return;
    switch (d->appliedScope) {
    case ControlScope::focusedOnly:
        due->next(true);
        return;
    case ControlScope::mirrored:
        // Followers show what the leader shows; their own timers do nothing.
        if (id == d->leader)
            due->next(true);
        return;
    case ControlScope::all:
        break;
    }
    // Linked: the first running window's timer times every window. Phased, that window
    // steps at once and the others follow in launch order, one phase step apart.
    if (id != driver())
        return;
    d->phased.cancelAll();
    const QList<QUuid> running = steppingWindows();
    if (d->global.syncMode() == SyncMode::synchronized) {
        for (const QUuid &other : running) {
            if (SlideshowViewModel *target = viewModel(other))
                target->next(true);
        }
        return;
    }
    const double step = phaseStep(
        int(running.size()), due->slideDuration(), d->global.phaseDelayDivideEvenly(), d->global.phaseDelay());
    due->next(true);
    d->phased.schedule(running, step, [this](const QUuid &window) {
        // A window that has since paused, become a wall or started a video lets its turn pass.
        if (steppingWindows().contains(window))
            viewModel(window)->next(true);
    });
}

void SlideshowManager::setFocused(const QUuid &id)
{
    if (d->focused == id)
        return;
    d->focused = id;
    Q_EMIT focusedSlideshowIdChanged();
}

void SlideshowManager::setMirrorLeader(const QUuid &id)
{
    const QUuid leader = id.isNull() || d->active.contains(id) ? id : d->order.value(0);
    if (d->leader != leader) {
        d->leader = leader;
        Q_EMIT mirrorLeaderIdChanged();
    }
    applyCollageRoles();
    mirrorLeaderShown();
}

void SlideshowManager::applyScope()
{
    const ControlScope scope = d->global.controlScope();
    d->appliedScope = scope;
    d->phased.cancelAll();
    for (const ManagedSlideshow &slideshow : std::as_const(d->active))
        slideshow.viewModel->setCoordinated(scope != ControlScope::focusedOnly);
    setMirrorLeader(scope == ControlScope::mirrored ? d->focused : QUuid());
    d->scopeNotice.show(scopeNotice(scope));
}

void SlideshowManager::mirrorLeaderShown()
{
    if (d->appliedScope != ControlScope::mirrored)
        return;
    const SlideshowViewModel *leader = viewModel(d->leader);
    if (!leader || leader->displayMode() != DisplayMode::standard)
        return;
    const std::optional<ImageItem> item = leader->currentItem();
    if (!item)
        return;
    for (const QUuid &id : std::as_const(d->order)) {
        SlideshowViewModel *follower = viewModel(id);
        if (id == d->leader || !follower || follower->displayMode() != DisplayMode::standard)
            continue;
        const std::optional<ImageItem> shown = follower->currentItem();
        if (!shown || shown->url() != item->url())
            follower->showMirrored(*item, leader->transitionDirection());
    }
}

void SlideshowManager::applyCollageRoles()
{
    for (const QUuid &id : std::as_const(d->order)) {
        CollageWallModel *wall = viewModel(id)->collageWall();
        if (!wall)
            continue;
        wall->setCoordinator(&d->coordinator);
        CollageRole role = CollageRole::independent;
        if (d->appliedScope == ControlScope::mirrored)
            role = id == d->leader ? CollageRole::mirrorLeader : CollageRole::mirrorFollower;
        if (wall->role() != role)
            wall->setRole(role);
    }
}

void SlideshowManager::imageShown(const QUuid &id)
{
    const auto it = d->active.find(id);
    if (it == d->active.end())
        return;
    if (const std::optional<ImageItem> item = it->viewModel->currentItem())
        it->seenImages.insert(item->id());
    if (id == d->leader)
        mirrorLeaderShown();
}

void SlideshowManager::filterChanged(const QUuid &id)
{
    if (const SlideshowViewModel *changed = viewModel(id))
        d->filterNotice.show(filterNotice(changed->imageFilter()));
}

} // namespace sorvane
