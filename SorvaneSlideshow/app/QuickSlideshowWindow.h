#pragma once

#include "slideshow/KeyBinding.h"
#include "slideshow/SlideshowWindowController.h"

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QUrl>
#include <QUuid>

#include <functional>

namespace sorvane {

class SlideshowManager;
class SlideshowViewModel;

// One slideshow window on Qt Quick. It hands every key press to the manager through the
// view model's own bindings, reports focus and a close the user asked for, and follows
// the display it was put on. Main thread only.
class QuickSlideshowWindow final : public QObject, public SlideshowWindowController {
    Q_OBJECT

public:
    // The display a Qt screen stands for, as the factory numbers them.
    using ScreenOf = std::function<std::optional<SlideshowScreen>(QScreen *)>;
    // Sees a key before the show does (a dialog in the window); true when it took the key.
    using KeyFirst = std::function<bool(const QUuid &window, const KeyBinding &pressed)>;

    QuickSlideshowWindow(QQuickWindow *window, SlideshowViewModel &viewModel, SlideshowManager &manager,
        SlideshowScreen home, ScreenOf screenOf, KeyFirst keyFirst);
    ~QuickSlideshowWindow() override;

    void show(bool fullScreen) override;
    void setFullScreen(bool fullScreen) override;
    bool isFullScreen() const override;
    void close() override;
    std::optional<SlideshowScreen> screen() const override;

    QUuid id() const { return m_id; }
    QQuickWindow *window() const { return m_window; }
    // The display the window was opened on: it goes back there when that display returns.
    const SlideshowScreen &home() const { return m_home; }
    // The display this window was last put on (Qt may move a window on its own when a
    // display goes; this keeps where the show put it).
    quint32 placedOn() const { return m_placedOn; }
    // Puts the window on `screen` (full screen there if it was), keeping the show running.
    void moveTo(QScreen *screen);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // True when the key was the show's.
    bool keyPressed(const QKeyEvent &event);
    // Logs the file now on screen when it is not the one logged last.
    void itemChanged();

    QPointer<QQuickWindow> m_window;
    SlideshowViewModel &m_viewModel;
    SlideshowManager &m_manager;
    QUuid m_id;
    SlideshowScreen m_home;
    ScreenOf m_screenOf;
    KeyFirst m_keyFirst;
    quint32 m_placedOn = 0;
    bool m_closing = false;
    QUrl m_shown;
};

} // namespace sorvane
