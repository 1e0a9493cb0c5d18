// Videos, the trash and collage mode of a slideshow window.
#include "slideshow/SlideshowViewModel.h"

#include "EngineLog.h"
#include "collage/CollageWallModel.h"
#include "slideshow/HostShell.h"
#include "slideshow/ImageClaimTracker.h"

#include <algorithm>

namespace sorvane {

// Videos.

void SlideshowViewModel::updateVideoHold()
{
    const std::optional<ImageItem> item = currentItem();
    const bool held = item && item->mediaType() == MediaType::video;
    if (held == m_isHeldByVideo)
        return;
    m_isHeldByVideo = held;
    Q_EMIT isHeldByVideoChanged();
}

void SlideshowViewModel::videoEnded(const QString &itemId)
{
    const std::optional<ImageItem> item = currentItem();
    if (!item || !m_isHeldByVideo || item->id() != QUuid::fromString(itemId))
        return;
    m_isHeldByVideo = false;
    Q_EMIT isHeldByVideoChanged();
    // The video had its time; a paused show keeps it on screen.
    if (m_isActive && !m_isPaused && m_settings.autoAdvance)
        next(true);
}

void SlideshowViewModel::itemFailed(const QString &itemId)
{
    const std::optional<ImageItem> item = currentItem();
    if (!item || item->id() != QUuid::fromString(itemId))
        return;
    qCWarning(lcEngine) << "An item could not be shown and leaves the slideshow:" << item->displayName();
    if (m_isHeldByVideo) {
        m_isHeldByVideo = false;
        Q_EMIT isHeldByVideoChanged();
    }
    // Nothing to look at: the next item shows even when paused.
    removeFile(item->url(), *item);
}

// Trash.

void SlideshowViewModel::moveCurrentToTrash()
{
    const std::optional<ImageItem> item = currentItem();
    if (!item || m_displayMode != DisplayMode::standard)
        return;
    const bool resumeAfter = !m_isPaused;
    setPaused(true);
    const QPointer<SlideshowViewModel> self(this);
    const QUuid itemId = item->id();
    m_host.moveToTrash(*item, [self, itemId, resumeAfter](HostShell::TrashOutcome outcome, const QString &message) {
        if (self)
            self->onTrashDone(itemId, resumeAfter, int(outcome), message);
    });
}

// Every listing of the file leaves the show (it was trashed, or it cannot be shown); when
// it was on screen, the item after it shows.
void SlideshowViewModel::removeFile(QUrl url, ImageItem listed)
{
    const std::optional<ImageItem> shown = currentItem();
    const bool wasShown = shown && shown->url() == url;
    const int index = int(m_images.indexOf(listed));
    // Every listing of the file goes: it is no longer there to show.
    const int before = int(std::count_if(
        m_images.cbegin(), m_images.cbegin() + index, [&](const ImageItem &item) { return item.url() == url; }));
    QList<ImageItem> remaining = m_images;
    remaining.removeIf([&](const ImageItem &item) { return item.url() == url; });
    if (wasShown)
        releaseClaim(url);
    ++m_collagePoolGeneration;
    Q_EMIT collagePoolGenerationChanged();
    if (!wasShown) {
        // Another slide is on screen (the user moved on while the host asked): it stays.
        replaceImages(std::move(remaining), shown);
    } else if (remaining.isEmpty()) {
        m_images.clear();
        m_currentIndex = 0;
        setLayer(true, std::nullopt);
        setLayer(false, std::nullopt);
        Q_EMIT imagesChanged();
        announceCurrentIndex();
    } else {
        m_images = std::move(remaining);
        Q_EMIT imagesChanged();
        // The item after the removed one moved into its place.
        int nextIndex = index - before;
        if (nextIndex >= m_images.size())
            nextIndex = m_settings.loopSlideshow ? 0 : int(m_images.size()) - 1;
        m_currentIndex = nextIndex;
        announceCurrentIndex();
        // A window stopped while the host asked shows and claims nothing more.
        if (m_isActive) {
            claimCurrent();
            ++m_imagesViewedInSession;
            showCurrent(TransitionDirection::forward);
        }
    }
    if (m_collageWall)
        m_collageWall->setPool(m_images, m_collagePoolGeneration);
}

void SlideshowViewModel::onTrashDone(const QUuid &itemId, bool resumeAfter, int outcome, const QString &message)
{
    const auto trashed
        = std::find_if(m_images.cbegin(), m_images.cend(), [&](const ImageItem &item) { return item.id() == itemId; });
    if (HostShell::TrashOutcome(outcome) == HostShell::TrashOutcome::moved && trashed != m_images.cend()) {
        removeFile(trashed->url(), *trashed);
    } else if (HostShell::TrashOutcome(outcome) == HostShell::TrashOutcome::failed) {
        qCWarning(lcEngine) << "The item was not moved to the trash:" << message;
    }
    if (resumeAfter)
        setPaused(false);
}

// Collage mode.

void SlideshowViewModel::setCollageLayout(CollageLayout layout)
{
    if (m_collageLayout == layout)
        return;
    m_collageLayout = layout;
    if (m_collageWall)
        m_collageWall->setLayout(layout);
    Q_EMIT collageLayoutChanged();
}

void SlideshowViewModel::setFlowOrientation(FlowOrientation orientation)
{
    if (m_flowOrientation == orientation)
        return;
    m_flowOrientation = orientation;
    if (m_collageWall)
        m_collageWall->setOrientationOverride(orientation);
    Q_EMIT flowOrientationChanged();
}

void SlideshowViewModel::setCollageFlowColumns(int columns)
{
    columns = std::max(1, columns);
    if (m_collageFlowColumns == columns)
        return;
    m_collageFlowColumns = columns;
    Q_EMIT collageFlowColumnsChanged();
}

void SlideshowViewModel::enterCollage()
{
    if (m_collageWall)
        return;
    const bool couldReturn = canReturnToCollage();
    cancelAdvance();
    cancelTimer(m_kenBurnsTimer);
    if (m_isTransitioning)
        finishTransition();
    // A wall shows many items: this window no longer holds one of them.
    if (m_claimedUrl)
        releaseClaim(*m_claimedUrl);
    auto *wall = new CollageWallModel(m_clock, m_timers, m_random(), this);
    m_collageWall = wall;
    wall->setLayout(m_collageLayout);
    wall->setOrientationOverride(m_flowOrientation);
    wall->setPool(m_images, m_collagePoolGeneration);
    wall->setRestoreWall(m_collageWallSnapshot);
    wall->setPaused(m_isPaused);
    connect(wall, &CollageWallModel::wallCaptured, this,
        [this](const CollageWallState &state) { m_collageWallSnapshot = state; });
    connect(
        wall, &CollageWallModel::drillIn, this, [this](const QUuid &itemId) { openFromCollage(itemId.toString()); });
    m_displayMode = DisplayMode::collage;
    Q_EMIT displayModeChanged();
    if (couldReturn)
        Q_EMIT canReturnToCollageChanged();
    wall->appear();
}

void SlideshowViewModel::leaveCollage()
{
    CollageWallModel *wall = m_collageWall.data();
    m_collageWall.clear();
    if (!wall)
        return;
    wall->capture();
    wall->disconnect(this);
    // The wall may be inside one of its own signals (a double click opens an item).
    wall->deleteLater();
    m_displayMode = DisplayMode::standard;
    Q_EMIT displayModeChanged();
    if (canReturnToCollage())
        Q_EMIT canReturnToCollageChanged();
}

void SlideshowViewModel::openFromCollage(const QString &itemId)
{
    const QUuid id = QUuid::fromString(itemId);
    const auto found
        = std::find_if(m_images.cbegin(), m_images.cend(), [&](const ImageItem &item) { return item.id() == id; });
    if (found == m_images.cend() || m_displayMode != DisplayMode::collage)
        return;
    leaveCollage();
    setCurrentIndex(int(found - m_images.cbegin()));
    m_claimedUrl.reset();
    if (m_claims && m_isActive) {
        m_claims->claim(found->url());
        m_claimedUrl = found->url();
    }
    ++m_imagesViewedInSession;
    Q_EMIT currentImageRealFilenameChanged();
    showCurrent(TransitionDirection::forward);
}

void SlideshowViewModel::returnToCollage()
{
    if (!canReturnToCollage())
        return;
    enterCollage();
}

void SlideshowViewModel::stepCollage(CollageWallStep step)
{
    if (!m_collageWall)
        return;
    m_collageWall->step(step);
    Q_EMIT collageWallSteps(step);
}

} // namespace sorvane
