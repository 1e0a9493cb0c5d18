#pragma once

#include "core/PlayerControlsModel.h"
#include "core/PlayerKeyRouter.h"
#include "core/ResumeStore.h"
#include "slideshow/QtTimerScheduler.h"
#include "slideshow/SystemClock.h"
#include "views/KeyActionRouter.h"
#include "views/PointerVisibility.h"
#include "views/ScreenWindows.h"

#include <QList>
#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStringList>

#include <memory>
#include <optional>

namespace sorvane {

class BrandLogoCache;
class DisplaySleepInhibitor;
class OpenedBundle;
class PlayerCollageWall;
class PlayerControlsController;
class PlayerEngine;
class PlayerWindows;
class SlideModel;
struct OpenedBundleBranding;

// Owns the player's run: finds and opens the bundle, shows the holding screen or
// starts playback on every screen, follows screens that come and go, keeps the
// display awake while playing, routes keys and pointer, and tears it all down.
// No failure here ever reaches the viewer as a dialog.
class PlayerAppDelegate : public QObject {
    Q_OBJECT

public:
    struct Options {
        QString applicationFolder;
        QStringList bundleArguments;
        std::unique_ptr<DisplaySleepInhibitor> inhibitor;
    };

    explicit PlayerAppDelegate(Options options, QObject *parent = nullptr);
    ~PlayerAppDelegate() override;

    // The start-up sequence after the single-instance check.
    void start();
    void quit();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectHandlers();
    void showHolding(const OpenedBundleBranding *branding);
    QQuickWindow *makeHoldingWindow(QScreen *screen);
    void buildHoldingWindows();
    void logHolding() const;
    void startPlayback(std::shared_ptr<OpenedBundle> bundle);
    void setUpSlides(const OpenedBundle &bundle);
    void screensChanged();
    void bringForward();
    void firstPhotoPresented();

    Options m_options;
    QQmlEngine m_qml;
    SystemClock m_clock;
    QtTimerScheduler m_timers;
    PlayerKeyRouter m_keys;
    KeyActionRouter<PlayerAction> m_keyRouting;
    PlayerControlsModel m_controlsModel;
    std::unique_ptr<PlayerControlsController> m_controls;
    ResumeStore m_resume;
    BrandLogoCache *m_logos = nullptr; // owned by the QML engine
    std::shared_ptr<OpenedBundle> m_bundle;
    std::unique_ptr<SlideModel> m_slides;
    std::unique_ptr<PlayerCollageWall> m_walls;
    std::unique_ptr<PlayerWindows> m_windows;
    std::unique_ptr<PlayerEngine> m_engine;
    ScreenWindows m_holdingWindows;
    QString m_holdingName;
    QUrl m_holdingLogo;
    bool m_holding = false;
    PointerVisibility m_pointer;
    bool m_anyPresented = false;
    bool m_quitting = false;
};

} // namespace sorvane
