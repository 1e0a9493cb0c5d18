#pragma once

#include "collage/CollageLayout.h"
#include "collage/CollageWallState.h"
#include "collage/CollageWallStep.h"
#include "collage/FlowOrientation.h"
#include "media/ImageItem.h"
#include "slideshow/DisplayMode.h"
#include "slideshow/ImageFilter.h"
#include "slideshow/SlideshowSettings.h"
#include "slideshow/SortMode.h"
#include "slideshow/TimerScheduler.h"
#include "slideshow/TransitionDirection.h"
#include "slideshow/TransitionMotion.h"
#include "slideshow/TransitionStyle.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QUuid>

#include <memory>
#include <optional>
#include <random>

namespace sorvane {

class Clock;
class CollageWallModel;
class HostShell;
class ImageClaimTracker;
class Preferences;
class SlideshowManager;

// One slide at a time, or a collage wall.
using SlideshowDisplayMode = DisplayMode;

// The state machine behind one slideshow window: its items and order, the current
// position, the auto-advance timer, the two image layers and the running transition,
// zoom and pan, and whether the controls show. The view only reads the published
// state and calls the operations; keys and gestures call the same operations. Time
// comes from the injected clock and timers. Main thread only.
class SlideshowViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool isFullScreen READ isFullScreen WRITE setFullScreen NOTIFY isFullScreenChanged)
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY currentIndexChanged)
    Q_PROPERTY(QUuid imageUpdateTrigger READ imageUpdateTrigger NOTIFY imageUpdateTriggerChanged)
    Q_PROPERTY(bool isPaused READ isPaused WRITE setPaused NOTIFY isPausedChanged)
    Q_PROPERTY(sorvane::DisplayMode displayMode READ displayMode NOTIFY displayModeChanged)
    Q_PROPERTY(
        sorvane::CollageLayout collageLayout READ collageLayout WRITE setCollageLayout NOTIFY collageLayoutChanged)
    Q_PROPERTY(sorvane::FlowOrientation flowOrientation READ flowOrientation WRITE setFlowOrientation NOTIFY
            flowOrientationChanged)
    Q_PROPERTY(
        int collageFlowColumns READ collageFlowColumns WRITE setCollageFlowColumns NOTIFY collageFlowColumnsChanged)
    Q_PROPERTY(bool canReturnToCollage READ canReturnToCollage NOTIFY canReturnToCollageChanged)
    Q_PROPERTY(qint64 collagePoolGeneration READ collagePoolGeneration NOTIFY collagePoolGenerationChanged)
    Q_PROPERTY(sorvane::SortMode sortMode READ sortMode WRITE setSortMode NOTIFY sortModeChanged)
    Q_PROPERTY(QList<sorvane::ImageItem> images READ images NOTIFY imagesChanged)
    Q_PROPERTY(double slideDuration READ slideDuration NOTIFY slideDurationChanged)
    Q_PROPERTY(sorvane::SlideshowSettings settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(bool showControls READ showControls NOTIFY showControlsChanged)
    Q_PROPERTY(std::optional<sorvane::ImageItem> primaryImage READ primaryImage NOTIFY primaryImageChanged)
    Q_PROPERTY(std::optional<sorvane::ImageItem> secondaryImage READ secondaryImage NOTIFY secondaryImageChanged)
    Q_PROPERTY(double primaryOpacity READ primaryOpacity NOTIFY primaryOpacityChanged)
    Q_PROPERTY(double secondaryOpacity READ secondaryOpacity NOTIFY secondaryOpacityChanged)
    Q_PROPERTY(bool isTransitioning READ isTransitioning NOTIFY isTransitioningChanged)
    Q_PROPERTY(bool isPrimaryLayerActive READ isPrimaryLayerActive NOTIFY isPrimaryLayerActiveChanged)
    Q_PROPERTY(double transitionProgress READ transitionProgress NOTIFY transitionProgressChanged)
    Q_PROPERTY(
        sorvane::TransitionStyle activeTransitionStyle READ activeTransitionStyle NOTIFY activeTransitionStyleChanged)
    Q_PROPERTY(
        sorvane::TransitionDirection transitionDirection READ transitionDirection NOTIFY transitionDirectionChanged)
    Q_PROPERTY(double kenBurnsProgress READ kenBurnsProgress NOTIFY kenBurnsProgressChanged)
    Q_PROPERTY(QSizeF kenBurnsVector READ kenBurnsVector NOTIFY kenBurnsVectorChanged)
    Q_PROPERTY(QSizeF outgoingKenBurnsVector READ outgoingKenBurnsVector NOTIFY outgoingKenBurnsVectorChanged)
    Q_PROPERTY(double outgoingKenBurnsAmount READ outgoingKenBurnsAmount NOTIFY outgoingKenBurnsAmountChanged)
    Q_PROPERTY(double zoomLevel READ zoomLevel NOTIFY zoomLevelChanged)
    Q_PROPERTY(QSizeF zoomOffset READ zoomOffset NOTIFY zoomOffsetChanged)
    Q_PROPERTY(QString currentImageRealFilename READ currentImageRealFilename NOTIFY currentImageRealFilenameChanged)
    // Beyond the record of the design, for the views: the filter drawn on every slide,
    // the "N of M" text, and whether a video on screen holds the advance.
    Q_PROPERTY(sorvane::ImageFilter imageFilter READ imageFilter WRITE setImageFilter NOTIFY imageFilterChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressTextChanged)
    Q_PROPERTY(bool isHeldByVideo READ isHeldByVideo NOTIFY isHeldByVideoChanged)

public:
    static constexpr double minimumSlideDuration = 1.0;
    static constexpr double maximumSlideDuration = 60.0;
    static constexpr double intervalStep = 1.0;
    static constexpr double zoomStep = 1.25;
    static constexpr double maximumZoom = 5.0;
    static constexpr double minimumZoom = 0.25; // without preventZoomOutPast1x

    struct Services {
        const Clock &clock;
        TimerScheduler &timers;
        // Read for duplicate avoidance at each step; written when `settings` change
        // and the settings are not transient.
        Preferences &preferences;
        HostShell &host;
    };

    // `items` in the order given; `sortMode` orders them (random shuffles with `seed`).
    // Everything in `services` must outlive the view model. Nothing runs until `start`.
    SlideshowViewModel(Services services, QList<ImageItem> items, SlideshowSettings settings, SortMode sortMode,
        quint64 seed, QObject *parent = nullptr);
    ~SlideshowViewModel() override;

    const QUuid &id() const { return m_id; }

    // Set by the manager that runs this window. Duplicate avoidance applies only while
    // a claim tracker is set (and the preference is on).
    SlideshowManager *manager() const;
    void setManager(SlideshowManager *manager, std::shared_ptr<ImageClaimTracker> claims);
    // Transient settings are this run's only: changes are never written back.
    bool useTransientSettings() const { return m_useTransientSettings; }
    void setUseTransientSettings(bool transient) { m_useTransientSettings = transient; }
    // While coordinated, the auto-advance timer does not step this window itself but
    // emits `advanceDue`, and the manager decides who steps when.
    void setCoordinated(bool coordinated);

    // Published state.
    bool isActive() const;
    bool isFullScreen() const;
    int currentIndex() const;
    QUuid imageUpdateTrigger() const;
    bool isPaused() const;
    DisplayMode displayMode() const;
    CollageLayout collageLayout() const;
    FlowOrientation flowOrientation() const;
    int collageFlowColumns() const;
    bool canReturnToCollage() const;
    qint64 collagePoolGeneration() const;
    SortMode sortMode() const;
    const QList<ImageItem> &images() const;
    double slideDuration() const;
    const SlideshowSettings &settings() const;
    bool showControls() const;
    const std::optional<ImageItem> &primaryImage() const;
    const std::optional<ImageItem> &secondaryImage() const;
    double primaryOpacity() const;
    double secondaryOpacity() const;
    bool isTransitioning() const;
    bool isPrimaryLayerActive() const;
    double transitionProgress() const;
    TransitionStyle activeTransitionStyle() const;
    TransitionDirection transitionDirection() const;
    double kenBurnsProgress() const;
    QSizeF kenBurnsVector() const;
    QSizeF outgoingKenBurnsVector() const;
    double outgoingKenBurnsAmount() const;
    double zoomLevel() const;
    QSizeF zoomOffset() const;
    QString currentImageRealFilename() const;
    ImageFilter imageFilter() const;
    QString progressText() const;
    bool isHeldByVideo() const;

    // Unpublished state the manager and tests read.
    std::optional<ImageItem> currentItem() const;
    qint64 transitionGeneration() const;
    qint64 imagesViewedInSession() const;
    double baseZoomLevel() const;
    // The motion the layer functions take for the running transition.
    TransitionMotion currentMotion() const;

    // Session.
    // Shows the current item (claiming it) and starts the auto-advance timer unless paused.
    Q_INVOKABLE void start();
    // Stops every timer and the running transition and releases this window's claim.
    Q_INVOKABLE void stop();
    void setPaused(bool paused);
    Q_INVOKABLE void togglePlayPause();
    void setFullScreen(bool fullScreen);

    // Navigation. `automatic` is the timer's call: only it reshuffles at the end of a
    // looping random show.
    Q_INVOKABLE void next(bool automatic = false);
    Q_INVOKABLE void previous();
    // Shows `item` (found by URL in `images`) as the mirror of another window.
    void showMirrored(const ImageItem &item, TransitionDirection direction);
    // Replaces the items (for a folder still being scanned: the current item stays current).
    void setImages(const QList<ImageItem> &items);
    void setSortMode(SortMode mode);
    // Random ⇄ sequential.
    Q_INVOKABLE void toggleSortMode();

    // Interval.
    Q_INVOKABLE void increaseInterval();
    Q_INVOKABLE void decreaseInterval();

    // Transitions.
    void setSettings(const SlideshowSettings &settings);
    // Turns transitions off, remembering the style; on again restores it (cross-fade
    // when none was remembered).
    Q_INVOKABLE void toggleTransitions();
    // Set when frames fall behind: every style but none becomes a cross-fade.
    void setTransitionBudgetFallback(bool fallback);
    bool transitionBudgetFallback() const;

    // Zoom and pan.
    Q_INVOKABLE void zoomIn();
    Q_INVOKABLE void zoomOut();
    Q_INVOKABLE void resetZoom();
    // A pinch in progress scales `baseZoomLevel`; its end makes the result the base.
    Q_INVOKABLE void pinchChanged(double scale);
    Q_INVOKABLE void pinchEnded();
    // A scroll-wheel delta (positive zooms in) times `scrollZoomSensitivity`.
    Q_INVOKABLE void scrollZoom(double delta);
    // Double click: fitted ⇄ `smartZoomLevel`.
    Q_INVOKABLE void smartZoom();
    // Moves a zoomed slide; the natural-scrolling setting inverts the direction.
    Q_INVOKABLE void pan(double dx, double dy);

    // Controls.
    // Shows the controls and restarts their hide timer (`controlHideDelay`).
    Q_INVOKABLE void revealControls();
    Q_INVOKABLE void hideControls();
    void setPausedForContextMenu(bool open);

    // Filters: none → black and white → sepia → vintage → none.
    void setImageFilter(ImageFilter filter);
    Q_INVOKABLE void cycleImageFilter();

    // Asks the host to move the current item to the trash; once moved it leaves
    // `images` and the next item shows.
    Q_INVOKABLE void moveCurrentToTrash();

    // Videos: a video on screen holds the advance until the view reports its end.
    Q_INVOKABLE void videoEnded(const QString &itemId);
    // The view could not show the current item (a damaged photo, a video that fails):
    // every listing of its file leaves the show and the next item shows, even when paused.
    Q_INVOKABLE void itemFailed(const QString &itemId);

    // Collage mode, over the engine's wall model (owned here while in collage mode).
    void setCollageLayout(CollageLayout layout);
    void setFlowOrientation(FlowOrientation orientation);
    void setCollageFlowColumns(int columns);
    Q_INVOKABLE void enterCollage();
    // Leaves the wall for the standard show at the item, keeping a snapshot to return to.
    Q_INVOKABLE void openFromCollage(const QString &itemId);
    Q_INVOKABLE void returnToCollage();
    Q_INVOKABLE void stepCollage(sorvane::CollageWallStep step);
    CollageWallModel *collageWall() const;
    const std::optional<CollageWallState> &collageWallSnapshot() const;

Q_SIGNALS:
    void isActiveChanged();
    void isFullScreenChanged();
    void currentIndexChanged();
    void imageUpdateTriggerChanged();
    void isPausedChanged();
    void displayModeChanged();
    void collageLayoutChanged();
    void flowOrientationChanged();
    void collageFlowColumnsChanged();
    void canReturnToCollageChanged();
    void collagePoolGenerationChanged();
    void sortModeChanged();
    void imagesChanged();
    void slideDurationChanged();
    void settingsChanged();
    void showControlsChanged();
    void primaryImageChanged();
    void secondaryImageChanged();
    void primaryOpacityChanged();
    void secondaryOpacityChanged();
    void isTransitioningChanged();
    void isPrimaryLayerActiveChanged();
    void transitionProgressChanged();
    void activeTransitionStyleChanged();
    void transitionDirectionChanged();
    void kenBurnsProgressChanged();
    void kenBurnsVectorChanged();
    void outgoingKenBurnsVectorChanged();
    void outgoingKenBurnsAmountChanged();
    void zoomLevelChanged();
    void zoomOffsetChanged();
    void currentImageRealFilenameChanged();
    void imageFilterChanged();
    void progressTextChanged();
    void isHeldByVideoChanged();

    // The wall changes published to the collage renderer.
    void collageWallSteps(sorvane::CollageWallStep step);
    // While coordinated: the auto-advance interval has run out.
    void advanceDue();

private:
    bool duplicateAvoidanceApplies() const;
    void setCurrentIndex(int index);
    // The index, the progress text and the file name follow the current item.
    void announceCurrentIndex();
    // One step by the step rule; shows the item it leads to.
    void step(TransitionDirection direction);
    void showCurrent(TransitionDirection direction);
    void claimCurrent();
    void releaseClaim(const QUrl &url);
    void swapLayersAtOnce(const ImageItem &incoming);
    void startTransition(const ImageItem &incoming, TransitionStyle style, TransitionDirection direction);
    void onTransitionFrame(qint64 generation);
    void finishTransition();
    void setTransitionProgress(double progress);
    void setLayer(bool primary, const std::optional<ImageItem> &item);
    void setLayerOpacities(double primary, double secondary);
    void drawKenBurnsVector();
    // The current slide's drift starts now (held while the show is paused).
    void restartKenBurns();
    void startKenBurnsClock();
    void onKenBurnsFrame();
    void scheduleAdvance();
    void cancelAdvance();
    void onAdvanceDue();
    void updateVideoHold();
    void setZoom(double level, bool setBase);
    double zoomFloor() const;
    void afterZoomCommand();
    void setSlideDuration(double seconds);
    void persistSettings();
    void setActive(bool active);
    void setShowControls(bool show);
    void reorder(SortMode mode, bool freshShuffle);
    void replaceImages(QList<ImageItem> ordered, const std::optional<ImageItem> &keep);
    void removeFile(QUrl url, ImageItem listed);
    void onTrashDone(const QUuid &itemId, bool resumeAfter, int outcome, const QString &message);
    void leaveCollage();
    void cancelTimer(std::optional<TimerScheduler::TimerId> &timer);

    const Clock &m_clock;
    TimerScheduler &m_timers;
    Preferences &m_preferences;
    HostShell &m_host;
    QUuid m_id;
    bool m_useTransientSettings = false;

    // The manager owns this view model, so it outlives it.
    SlideshowManager *m_manager = nullptr;
    std::shared_ptr<ImageClaimTracker> m_claims;
    std::optional<QUrl> m_claimedUrl;
    bool m_coordinated = false;
    // Every random draw (orders, transition styles, drift vectors) comes from the seed.
    std::mt19937_64 m_random;

    bool m_isActive = false;
    bool m_isFullScreen = false;
    int m_currentIndex = 0;
    QUuid m_imageUpdateTrigger;
    bool m_isPaused = false;
    bool m_pausedForContextMenu = false;
    DisplayMode m_displayMode = DisplayMode::standard;
    CollageLayout m_collageLayout = CollageLayout::flow;
    FlowOrientation m_flowOrientation = FlowOrientation::vertical;
    int m_collageFlowColumns = 3;
    std::optional<CollageWallState> m_collageWallSnapshot;
    qint64 m_collagePoolGeneration = 1;
    QPointer<CollageWallModel> m_collageWall;
    SortMode m_sortMode = SortMode::sequential;
    QList<ImageItem> m_images;
    double m_slideDuration = 5.0;
    SlideshowSettings m_settings;
    bool m_showControls = false;

    std::optional<ImageItem> m_primaryImage;
    std::optional<ImageItem> m_secondaryImage;
    double m_primaryOpacity = 1.0;
    double m_secondaryOpacity = 0.0;
    bool m_isTransitioning = false;
    bool m_isPrimaryLayerActive = true;
    double m_transitionProgress = 0.0;
    double m_transitionStartedAt = 0.0;
    TransitionStyle m_activeTransitionStyle = TransitionStyle::none;
    TransitionDirection m_transitionDirection = TransitionDirection::forward;
    qint64 m_transitionGeneration = 0;
    std::optional<TransitionStyle> m_transitionStyleBeforeToggleOff;
    bool m_transitionBudgetFallback = false;

    double m_kenBurnsProgress = 0.0;
    QSizeF m_kenBurnsVector {0, 0};
    QSizeF m_outgoingKenBurnsVector {0, 0};
    double m_outgoingKenBurnsAmount = 0.0;
    std::optional<double> m_kenBurnsStart;
    std::optional<double> m_pausedAt;

    double m_zoomLevel = 1.0;
    double m_baseZoomLevel = 1.0;
    QSizeF m_zoomOffset {0, 0};
    ImageFilter m_imageFilter = ImageFilter::none;
    bool m_isHeldByVideo = false;
    qint64 m_imagesViewedInSession = 0;

    std::optional<TimerScheduler::TimerId> m_advanceTimer;
    std::optional<TimerScheduler::TimerId> m_controlHideTimer;
    std::optional<TimerScheduler::TimerId> m_transitionTimer;
    std::optional<TimerScheduler::TimerId> m_kenBurnsTimer;
};

} // namespace sorvane
