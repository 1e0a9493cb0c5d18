#pragma once

#include "views/TransitionFrameBudget.h"

#include <QObject>
#include <QPointer>

class QQuickWindow;

namespace sorvane {

class Clock;
class SlideshowViewModel;

// Feeds a window's frames to a `TransitionFrameBudget` while its view model transitions,
// and turns the view model's transitions into cross-fades when the budget says the frames
// fell behind (logged once per window).
class TransitionFrameWatcher : public QObject {
    Q_OBJECT
public:
    // The message logged when a window falls back.
    static const char *const kFallbackMessage;

    // `clock` must outlive the watcher; the window and view model may go first.
    TransitionFrameWatcher(
        QQuickWindow *window, SlideshowViewModel *viewModel, const Clock &clock, QObject *parent = nullptr);

private:
    void onTransitioningChanged();
    void onFrame(double seconds);

    QPointer<QQuickWindow> m_window;
    QPointer<SlideshowViewModel> m_viewModel;
    const Clock &m_clock;
    TransitionFrameBudget m_budget;
};

} // namespace sorvane
