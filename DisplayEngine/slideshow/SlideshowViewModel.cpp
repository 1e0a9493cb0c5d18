#include "slideshow/SlideshowViewModel.h"

#include "collage/CollageWallModel.h"
#include "slideshow/Clock.h"
#include "slideshow/HostShell.h"
#include "slideshow/ImageClaimTracker.h"
#include "slideshow/Preferences.h"
#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowOrder.h"
#include "slideshow/SlideshowStepRule.h"

#include <algorithm>

namespace sorvane {

SlideshowViewModel::SlideshowViewModel(Services services, QList<ImageItem> items, SlideshowSettings settings,
    SortMode sortMode, quint64 seed, QObject *parent)
    : QObject(parent), m_clock(services.clock), m_timers(services.timers), m_preferences(services.preferences),
      m_host(services.host), m_id(QUuid::createUuid()), m_random(seed), m_imageUpdateTrigger(QUuid::createUuid()),
      m_sortMode(sortMode), m_settings(std::move(settings))
{
    m_images = SlideshowOrder::ordered(std::move(items), sortMode, m_random());
    m_slideDuration = std::clamp(m_settings.defaultDuration, minimumSlideDuration, maximumSlideDuration);
    m_isFullScreen = m_settings.alwaysStartFullScreen;
}

SlideshowViewModel::~SlideshowViewModel()
{
    // Nothing scheduled may call into a destroyed view model.
    cancelTimer(m_advanceTimer);
    cancelTimer(m_controlHideTimer);
    cancelTimer(m_transitionTimer);
    cancelTimer(m_kenBurnsTimer);
    if (m_claims && m_claimedUrl)
        m_claims->release(*m_claimedUrl);
}

SlideshowManager *SlideshowViewModel::manager() const
{
    return m_manager;
}

void SlideshowViewModel::setManager(SlideshowManager *manager, std::shared_ptr<ImageClaimTracker> claims)
{
    if (m_claims && m_claimedUrl && m_claims != claims)
        m_claims->release(*m_claimedUrl);
    m_manager = manager;
    m_claims = std::move(claims);
    if (m_claims && m_claimedUrl)
        m_claims->claim(*m_claimedUrl);
}

void SlideshowViewModel::setCoordinated(bool coordinated)
{
    m_coordinated = coordinated;
}

bool SlideshowViewModel::isActive() const
{
    return m_isActive;
}
bool SlideshowViewModel::isFullScreen() const
{
    return m_isFullScreen;
}
int SlideshowViewModel::currentIndex() const
{
    return m_currentIndex;
}
QUuid SlideshowViewModel::imageUpdateTrigger() const
{
    return m_imageUpdateTrigger;
}
bool SlideshowViewModel::isPaused() const
{
    return m_isPaused;
}
DisplayMode SlideshowViewModel::displayMode() const
{
    return m_displayMode;
}
CollageLayout SlideshowViewModel::collageLayout() const
{
    return m_collageLayout;
}
FlowOrientation SlideshowViewModel::flowOrientation() const
{
    return m_flowOrientation;
}
int SlideshowViewModel::collageFlowColumns() const
{
    return m_collageFlowColumns;
}
bool SlideshowViewModel::canReturnToCollage() const
{
    return m_displayMode == DisplayMode::standard && m_collageWallSnapshot.has_value();
}
qint64 SlideshowViewModel::collagePoolGeneration() const
{
    return m_collagePoolGeneration;
}
SortMode SlideshowViewModel::sortMode() const
{
    return m_sortMode;
}
const QList<ImageItem> &SlideshowViewModel::images() const
{
    return m_images;
}
double SlideshowViewModel::slideDuration() const
{
    return m_slideDuration;
}
const SlideshowSettings &SlideshowViewModel::settings() const
{
    return m_settings;
}
bool SlideshowViewModel::showControls() const
{
    return m_showControls;
}
const std::optional<ImageItem> &SlideshowViewModel::primaryImage() const
{
    return m_primaryImage;
}
const std::optional<ImageItem> &SlideshowViewModel::secondaryImage() const
{
    return m_secondaryImage;
}
double SlideshowViewModel::primaryOpacity() const
{
    return m_primaryOpacity;
}
double SlideshowViewModel::secondaryOpacity() const
{
    return m_secondaryOpacity;
}
bool SlideshowViewModel::isTransitioning() const
{
    return m_isTransitioning;
}
bool SlideshowViewModel::isPrimaryLayerActive() const
{
    return m_isPrimaryLayerActive;
}
double SlideshowViewModel::transitionProgress() const
{
    return m_transitionProgress;
}
TransitionStyle SlideshowViewModel::activeTransitionStyle() const
{
    return m_activeTransitionStyle;
}
TransitionDirection SlideshowViewModel::transitionDirection() const
{
    return m_transitionDirection;
}
double SlideshowViewModel::kenBurnsProgress() const
{
    return m_kenBurnsProgress;
}
QSizeF SlideshowViewModel::kenBurnsVector() const
{
    return m_kenBurnsVector;
}
QSizeF SlideshowViewModel::outgoingKenBurnsVector() const
{
    return m_outgoingKenBurnsVector;
}
double SlideshowViewModel::outgoingKenBurnsAmount() const
{
    return m_outgoingKenBurnsAmount;
}
double SlideshowViewModel::zoomLevel() const
{
    return m_zoomLevel;
}
QSizeF SlideshowViewModel::zoomOffset() const
{
    return m_zoomOffset;
}
ImageFilter SlideshowViewModel::imageFilter() const
{
    return m_imageFilter;
}
bool SlideshowViewModel::isHeldByVideo() const
{
    return m_isHeldByVideo;
}
qint64 SlideshowViewModel::transitionGeneration() const
{
    return m_transitionGeneration;
}
qint64 SlideshowViewModel::imagesViewedInSession() const
{
    return m_imagesViewedInSession;
}
double SlideshowViewModel::baseZoomLevel() const
{
    return m_baseZoomLevel;
}
bool SlideshowViewModel::transitionBudgetFallback() const
{
    return m_transitionBudgetFallback;
}
CollageWallModel *SlideshowViewModel::collageWall() const
{
    return m_collageWall.data();
}
const std::optional<CollageWallState> &SlideshowViewModel::collageWallSnapshot() const
{
    return m_collageWallSnapshot;
}

std::optional<ImageItem> SlideshowViewModel::currentItem() const
{
    if (m_currentIndex < 0 || m_currentIndex >= m_images.size())
        return std::nullopt;
    return m_images.at(m_currentIndex);
}

QString SlideshowViewModel::currentImageRealFilename() const
{
    const std::optional<ImageItem> item = currentItem();
    return item ? item->displayName() : QString();
}

QString SlideshowViewModel::progressText() const
{
    if (m_images.isEmpty())
        return {};
    return QStringLiteral("%1 of %2").arg(m_currentIndex + 1).arg(m_images.size());
}

TransitionMotion SlideshowViewModel::currentMotion() const
{
    TransitionMotion motion;
    motion.style = m_activeTransitionStyle;
    motion.progress = m_isTransitioning ? m_transitionProgress : 1.0;
    motion.direction = m_transitionDirection;
    motion.kenBurnsVector = m_kenBurnsVector;
    motion.kenBurnsAmount = m_kenBurnsProgress;
    motion.outgoingKenBurnsVector = m_outgoingKenBurnsVector;
    motion.outgoingKenBurnsAmount = m_outgoingKenBurnsAmount;
    return motion;
}

// Session.

void SlideshowViewModel::start()
{
    if (m_isActive)
        return;
    setActive(true);
    m_imagesViewedInSession = 0;
    if (m_images.isEmpty())
        return;
    m_currentIndex = std::clamp(m_currentIndex, 0, int(m_images.size()) - 1);
    claimCurrent();
    m_imagesViewedInSession = 1;
    announceCurrentIndex();
    showCurrent(TransitionDirection::forward);
}

void SlideshowViewModel::stop()
{
    cancelAdvance();
    cancelTimer(m_controlHideTimer);
    cancelTimer(m_kenBurnsTimer);
    if (m_isTransitioning)
        finishTransition();
    if (m_collageWall)
        leaveCollage();
    if (m_claimedUrl)
        releaseClaim(*m_claimedUrl);
    setActive(false);
}

void SlideshowViewModel::setActive(bool active)
{
    if (m_isActive == active)
        return;
    m_isActive = active;
    Q_EMIT isActiveChanged();
}

void SlideshowViewModel::setPaused(bool paused)
{
    if (m_isPaused == paused)
        return;
    m_isPaused = paused;
    if (paused) {
        cancelAdvance();
        cancelTimer(m_kenBurnsTimer);
        m_pausedAt = m_clock.monotonicSeconds();
    } else {
        // The drift resumes where it stopped.
        if (m_kenBurnsStart && m_pausedAt)
            *m_kenBurnsStart += m_clock.monotonicSeconds() - *m_pausedAt;
        m_pausedAt.reset();
        startKenBurnsClock();
        scheduleAdvance();
    }
    if (m_collageWall)
        m_collageWall->setPaused(paused);
    Q_EMIT isPausedChanged();
}

void SlideshowViewModel::togglePlayPause()
{
    setPaused(!m_isPaused);
}

void SlideshowViewModel::setPausedForContextMenu(bool open)
{
    if (open && !m_isPaused) {
        m_pausedForContextMenu = true;
        setPaused(true);
    } else if (!open && m_pausedForContextMenu) {
        m_pausedForContextMenu = false;
        setPaused(false);
    }
}

void SlideshowViewModel::setFullScreen(bool fullScreen)
{
    if (m_isFullScreen == fullScreen)
        return;
    m_isFullScreen = fullScreen;
    Q_EMIT isFullScreenChanged();
}

// Claims.

bool SlideshowViewModel::duplicateAvoidanceApplies() const
{
    // A window that is not running holds no claim and takes none.
    if (!m_claims || !m_isActive)
        return false;
    return SlideshowGlobalSettings::readDuplicateAvoidance(m_preferences);
}

void SlideshowViewModel::claimCurrent()
{
    if (!m_claims || !m_isActive)
        return;
    if (duplicateAvoidanceApplies()) {
        // The first slide too avoids a file another window shows, when there is a free one.
        const int count = int(m_images.size());
        int offset = 0;
        const qsizetype found = m_claims->claimFirstFree([&]() -> std::optional<std::pair<qsizetype, QUrl>> {
            if (offset >= count)
                return std::nullopt;
            const int index = (m_currentIndex + offset++) % count;
            return std::make_pair(qsizetype(index), m_images.at(index).url());
        });
        if (found >= 0) {
            m_currentIndex = int(found);
            m_claimedUrl = m_images.at(m_currentIndex).url();
            return;
        }
    }
    m_claimedUrl = m_images.at(m_currentIndex).url();
    m_claims->claim(*m_claimedUrl);
}

void SlideshowViewModel::releaseClaim(const QUrl &url)
{
    if (m_claims)
        m_claims->release(url);
    if (m_claimedUrl == url)
        m_claimedUrl.reset();
}

// Navigation.

void SlideshowViewModel::next(bool automatic)
{
    if (m_displayMode == DisplayMode::collage) {
        stepCollage(CollageWallStep::forward);
        return;
    }
    const int count = int(m_images.size());
    if (count == 0)
        return;
    if (automatic && m_settings.reshuffleOnLoop && m_settings.loopSlideshow && m_sortMode == SortMode::random
        && count >= 2 && m_currentIndex == count - 1) {
        if (m_claimedUrl)
            releaseClaim(*m_claimedUrl);
        SlideshowOrder::shuffle(m_images, m_random());
        Q_EMIT imagesChanged();
        m_currentIndex = 0;
        claimCurrent();
        ++m_imagesViewedInSession;
        announceCurrentIndex();
        showCurrent(TransitionDirection::forward);
        return;
    }
    step(TransitionDirection::forward);
}

void SlideshowViewModel::previous()
{
    if (m_displayMode == DisplayMode::collage) {
        stepCollage(CollageWallStep::back);
        return;
    }
    if (m_images.isEmpty())
        return;
    step(TransitionDirection::backward);
}

void SlideshowViewModel::step(TransitionDirection direction)
{
    const bool forward = direction == TransitionDirection::forward;
    const bool avoid = duplicateAvoidanceApplies();
    const int target = avoid
        ? SlideshowStepRule::freeStep(m_images, m_currentIndex, forward, m_settings.loopSlideshow, *m_claims)
        : SlideshowStepRule::plainStep(m_currentIndex, int(m_images.size()), forward, m_settings.loopSlideshow);
    if (target == m_currentIndex) {
        // Nothing to move to: the slide stays and its time starts again.
        scheduleAdvance();
        return;
    }
    const QUrl incoming = m_images.at(target).url();
    if (m_claimedUrl && *m_claimedUrl != incoming)
        releaseClaim(*m_claimedUrl);
    if (m_claims && m_isActive && !avoid)
        m_claims->claim(incoming);
    if (m_isActive)
        m_claimedUrl = incoming;
    setCurrentIndex(target);
    ++m_imagesViewedInSession;
    showCurrent(direction);
}

void SlideshowViewModel::setCurrentIndex(int index)
{
    if (m_currentIndex == index)
        return;
    m_currentIndex = index;
    announceCurrentIndex();
}

void SlideshowViewModel::announceCurrentIndex()
{
    Q_EMIT currentIndexChanged();
    Q_EMIT progressTextChanged();
    Q_EMIT currentImageRealFilenameChanged();
}

void SlideshowViewModel::showMirrored(const ImageItem &item, TransitionDirection direction)
{
    const auto found = std::find_if(
        m_images.cbegin(), m_images.cend(), [&](const ImageItem &candidate) { return candidate.url() == item.url(); });
    if (found == m_images.cend())
        return;
    const int index = int(found - m_images.cbegin());
    // The leader of the mirror holds the claim on the file; this window holds none.
    if (m_claimedUrl)
        releaseClaim(*m_claimedUrl);
    if (index == m_currentIndex) {
        showCurrent(direction);
        return;
    }
    setCurrentIndex(index);
    ++m_imagesViewedInSession;
    showCurrent(direction);
}

void SlideshowViewModel::setImages(const QList<ImageItem> &items)
{
    replaceImages(SlideshowOrder::ordered(items, m_sortMode, m_random()), currentItem());
    ++m_collagePoolGeneration;
    Q_EMIT collagePoolGenerationChanged();
    if (m_collageWall)
        m_collageWall->setPool(m_images, m_collagePoolGeneration);
}

void SlideshowViewModel::setSortMode(SortMode mode)
{
    if (m_sortMode == mode)
        return;
    m_sortMode = mode;
    replaceImages(SlideshowOrder::ordered(m_images, mode, m_random()), currentItem());
    Q_EMIT sortModeChanged();
}

void SlideshowViewModel::toggleSortMode()
{
    setSortMode(m_sortMode == SortMode::random ? SortMode::sequential : SortMode::random);
}

void SlideshowViewModel::replaceImages(QList<ImageItem> ordered, const std::optional<ImageItem> &keep)
{
    m_images = std::move(ordered);
    int index = 0;
    if (keep) {
        auto found = std::find(m_images.cbegin(), m_images.cend(), *keep);
        if (found == m_images.cend()) {
            found = std::find_if(m_images.cbegin(), m_images.cend(),
                [&](const ImageItem &candidate) { return candidate.url() == keep->url(); });
        }
        if (found != m_images.cend())
            index = int(found - m_images.cbegin());
    }
    Q_EMIT imagesChanged();
    const bool moved = index != m_currentIndex;
    m_currentIndex = index;
    if (moved)
        Q_EMIT currentIndexChanged();
    Q_EMIT progressTextChanged();
    const std::optional<ImageItem> now = currentItem();
    if (m_isActive && !now) {
        // Nothing left to show.
        cancelAdvance();
        if (m_claimedUrl)
            releaseClaim(*m_claimedUrl);
        setLayer(true, std::nullopt);
        setLayer(false, std::nullopt);
        Q_EMIT currentImageRealFilenameChanged();
    } else if (m_isActive && now && m_displayMode == DisplayMode::standard && (!keep || !(*now == *keep))) {
        // Another item took the place of the one on screen.
        if (m_claimedUrl && *m_claimedUrl != now->url())
            releaseClaim(*m_claimedUrl);
        if (m_claims && m_claimedUrl != now->url())
            m_claims->claim(now->url());
        m_claimedUrl = now->url();
        Q_EMIT currentImageRealFilenameChanged();
        showCurrent(TransitionDirection::forward);
    }
}

void SlideshowViewModel::cancelTimer(std::optional<TimerScheduler::TimerId> &timer)
{
    if (timer)
        m_timers.cancel(*timer);
    timer.reset();
}

} // namespace sorvane
