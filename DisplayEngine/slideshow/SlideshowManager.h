#pragma once

#include "media/ImageItem.h"
#include "slideshow/ControlScope.h"
#include "slideshow/ManagedSlideshow.h"
#include "slideshow/SlideshowAction.h"
#include "slideshow/SlideshowCommand.h"
#include "slideshow/SlideshowLaunchRequest.h"
#include "slideshow/SlideshowSettings.h"
#include "slideshow/SortMode.h"
#include "slideshow/TimerScheduler.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QUuid>

#include <memory>
#include <optional>

namespace sorvane {

class Clock;
class CollageCoordinator;
class DisplaySleepInhibitor;
class HostShell;
class ImageClaimTracker;
class Preferences;
class SlideshowGlobalSettings;
class SlideshowWindowFactory;

// Runs every slideshow window of the process: launches them, tracks focus, routes
// commands by the control scope, times linked advances (together, or phased one
// window after another), shares the claims that keep linked windows on different
// files, and keeps the display awake while any show runs. Main thread only.
class SlideshowManager : public QObject {
    Q_OBJECT
    Q_MOC_INCLUDE("slideshow/SlideshowGlobalSettings.h")
    Q_PROPERTY(QList<QUuid> activeSlideshowIds READ activeSlideshowIds NOTIFY activeSlideshowsChanged)
    Q_PROPERTY(QUuid focusedSlideshowId READ focusedSlideshowId NOTIFY focusedSlideshowIdChanged)
    Q_PROPERTY(sorvane::SlideshowGlobalSettings *globalSettings READ globalSettings CONSTANT)
    Q_PROPERTY(QString scopeChangeMessage READ scopeChangeMessage NOTIFY scopeChangeMessageChanged)
    Q_PROPERTY(QString filterChangeMessage READ filterChangeMessage NOTIFY filterChangeMessageChanged)
    Q_PROPERTY(QUuid mirrorLeaderId READ mirrorLeaderId NOTIFY mirrorLeaderIdChanged)

public:
    // How long a scope or filter notice stays before it clears itself, in seconds.
    static constexpr double noticeDuration = 2.0;

    struct Services {
        const Clock &clock;
        TimerScheduler &timers;
        Preferences &preferences;
        HostShell &host;
        SlideshowWindowFactory &windows;
        // Held while any show runs; may be null.
        DisplaySleepInhibitor *sleepInhibitor = nullptr;
    };

    // Everything in `services` must outlive the manager.
    explicit SlideshowManager(Services services, QObject *parent = nullptr);
    ~SlideshowManager() override;

    // The pause between two windows' advances in phased mode, for `windows` running
    // windows and the slide interval `interval` (seconds).
    static double phaseStep(int windows, double interval, bool divideEvenly, double phaseDelay);
    // The notice shown when the control scope becomes `scope`.
    static QString scopeNotice(ControlScope scope);

    // Opens one window on the current display, or one per display (at most as many as
    // there are displays when `limitSlideshowsToMonitorCount`); windows after the first
    // take `secondarySlideshowSortMode` and may start paused. The first window plays in
    // `sortMode`. Returns the ids of the windows opened, the first display's first.
    // `transientSettings`: the settings are this run's only and never written back.
    QList<QUuid> launch(const SlideshowLaunchRequest &request, const QList<ImageItem> &items,
        const SlideshowSettings &settings, SortMode sortMode, bool transientSettings = false);

    // New items for every window (a scan still under way): each keeps its item, and a
    // window that had to share its file while too few were known moves to a free one.
    void setItems(const QList<ImageItem> &items);

    const QHash<QUuid, ManagedSlideshow> &activeSlideshows() const;
    QList<QUuid> activeSlideshowIds() const;
    SlideshowViewModel *viewModel(const QUuid &id) const;
    QUuid focusedSlideshowId() const;
    SlideshowGlobalSettings *globalSettings() const;
    QString scopeChangeMessage() const;
    QString filterChangeMessage() const;
    // Numbers the filter notices; each restarts the countdown, so only the newest clears.
    quint64 filterToastGeneration() const;
    QUuid mirrorLeaderId() const;
    // The windows still waiting for their turn of a phased advance, in turn order.
    QList<QUuid> pendingPhasedAdvances() const;
    ImageClaimTracker &imageClaimTracker() const;
    CollageCoordinator &collageCoordinator() const;

    // Reports from the windows.
    void windowFocused(const QUuid &id);
    // The window is gone: its timers and pending advances stop and its claim is released.
    void windowClosed(const QUuid &id);

    // A command from a menu or another window, routed by the control scope from the
    // focused window. Stop closes the focused window when independent, else every one.
    void send(SlideshowCommand command);
    // A bound key pressed in window `from`. Steps, play/pause, interval, order,
    // transitions, zoom and filter go by the control scope: `from` alone, every window,
    // or the mirror leader. Full screen and trash stay in `from`; help asks for the
    // overlay; exit is Escape.
    void perform(const QUuid &from, SlideshowAction action);
    // Escape in window `from`, by the Escape behaviour. "Exit Fullscreen First" takes a
    // full-screen window out of full screen; otherwise it stops that window alone, the
    // reach of "Stop Current Slideshow".
    void escapePressed(const QUuid &from);
    // Changes the scope and shows its notice.
    void setControlScope(ControlScope scope);
    void stopAll();

Q_SIGNALS:
    void activeSlideshowsChanged();
    void focusedSlideshowIdChanged();
    void scopeChangeMessageChanged();
    void filterChangeMessageChanged();
    void mirrorLeaderIdChanged();
    // The keyboard-shortcut overlay was asked for in window `id`.
    void shortcutsRequested(const QUuid &id);
    // The last show has ended.
    void allStopped();

private:
    void watch(SlideshowViewModel &viewModel);
    // Forgets a window: its view model stops and its claim and pending advances go.
    std::optional<ManagedSlideshow> take(const QUuid &id);
    void retire(ManagedSlideshow slideshow);
    void announceRemoval();
    void close(const QUuid &id);
    QList<QUuid> scopedTargets(const QUuid &from) const;
    void advanceDue(const QUuid &id);
    QUuid driver() const;
    QList<QUuid> steppingWindows() const;
    void setFocused(const QUuid &id);
    void setMirrorLeader(const QUuid &id);
    void applyScope();
    void mirrorLeaderShown();
    void applyCollageRoles();
    void imageShown(const QUuid &id);
    void separateSharedFiles();
    void filterChanged(const QUuid &id);

    struct State;
    std::unique_ptr<State> d;
};

} // namespace sorvane
