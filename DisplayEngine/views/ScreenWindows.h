#pragma once

#include "slideshow/TimerScheduler.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>

#include <functional>
#include <optional>

class QScreen;

namespace sorvane {

// One window per screen, made again when screens come, go or change size. The application
// supplies the window of a screen (its QML component and properties) through the factory;
// this class follows the screens and owns the windows.
class ScreenWindows : public QObject {
    Q_OBJECT

public:
    // The window of `screen`, the `index`-th in the system's order; null when it cannot be made.
    using Factory = std::function<QQuickWindow *(QScreen *screen, int index)>;
    // A change of screens arrives as a burst of signals; the windows are made again once
    // the screens have been still this long.
    static constexpr double settleSeconds = 0.2;

    ScreenWindows(Factory factory, TimerScheduler &timers, QObject *parent = nullptr);
    ~ScreenWindows() override;

    // Closes any windows and makes one per screen; the first one is activated.
    void build();
    // Hides and releases the windows. Closed windows are not made again when screens change.
    void close();
    QList<QQuickWindow *> windows() const;

Q_SIGNALS:
    // The screens changed while windows were open; sent before they are made again.
    void screensChanged();
    // The windows were made again for the screens there are now.
    void rebuilt();

private:
    void follow(QScreen *screen);
    void scheduleRebuild();
    void rebuild();

    Factory m_factory;
    TimerScheduler &m_timers;
    QList<QPointer<QQuickWindow>> m_windows;
    std::optional<TimerScheduler::TimerId> m_settle;
    bool m_open = false;
};

} // namespace sorvane
