#pragma once

#include "app/QuickSlideshowWindowFactory.h"
#include "core/SlideshowAppBridge.h"
#include "core/SlideshowRunOptions.h"
#include "media/ImageItem.h"
#include "media/MediaFolderScan.h"
#include "platform/ExternalVideoPlayers.h"
#include "slideshow/PreferenceStore.h"
#include "slideshow/QtTimerScheduler.h"
#include "slideshow/SlideshowSettings.h"
#include "slideshow/SystemClock.h"
#include "views/FirstPhotoTrace.h"
#include "views/PointerVisibility.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>

#include <memory>

namespace sorvane {

class DesktopHostShell;
class DisplaySleepInhibitor;
class InMemoryPreferences;
class SlideshowManager;

// Owns one run of the slideshow application: scans what it was given, launches the show
// on the first batch and hands later batches to every window, answers the host services
// (trash after the window's dialog, reduce motion), hides the pointer until it moves, and
// quits when the last show stops. Options of the run change the settings in memory only.
class SlideshowAppDelegate : public QObject {
    Q_OBJECT

public:
    struct Options {
        SlideshowRunOptions run;
        std::unique_ptr<DisplaySleepInhibitor> inhibitor;
        // Where the preferences live; the user's configuration folder when empty.
        QString preferencesFolder;
    };

    // Exit status when nothing could be shown.
    static constexpr int nothingToPlayExitCode = 1;

    explicit SlideshowAppDelegate(Options options, QObject *parent = nullptr);
    ~SlideshowAppDelegate() override;

    void start();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Preferences &runPreferences();
    void batchFound(const QList<ImageItem> &items);
    void scanFinished(const MediaFolderScanCounts &counts);
    void launch();
    void windowsOpened(const QList<QUuid> &ids);
    static bool transitionBudgetOn();
    void screenArrived();
    void confirmTrash(const ImageItem &item, std::function<void(bool)> answer);
    void fail(const QString &message);

    Options m_options;
    QQmlEngine m_qml;
    SystemClock m_clock;
    QtTimerScheduler m_timers;
    PreferenceStore m_stored;
    // This run's preferences when its options change global settings; else the stored ones.
    std::unique_ptr<InMemoryPreferences> m_transient;
    ExternalVideoPlayers m_players;
    SlideshowAppBridge m_bridge;
    std::unique_ptr<DesktopHostShell> m_host;
    QuickSlideshowWindowFactory m_windows;
    std::unique_ptr<SlideshowManager> m_manager;
    MediaFolderScan m_scan;
    SlideshowSettings m_settings;
    QList<ImageItem> m_items;
    bool m_launched = false;
    PointerVisibility m_pointer;
    FirstPhotoTrace m_firstPhoto;
};

} // namespace sorvane
