#pragma once

#include <QObject>
#include <QPointer>

#include <atomic>

class QQuickWindow;

namespace sorvane {

class Clock;
class SlideshowViewModel;

// Logs, on the "sorvane.frames" category (off unless asked for), the time between two
// frames a window swapped while its view model moved the picture: a transition
// ("transition crossFade", ...) or the Ken Burns drift at rest ("drift"). The first frame of
// a run of one motion only sets the mark, as the window may have been idle or doing something
// else before it. One line per frame, so only for measuring.
class FrameIntervalLog : public QObject {
    Q_OBJECT
public:
    // `clock` must be safe to read from the render thread and outlive the log.
    FrameIntervalLog(
        QQuickWindow *window, SlideshowViewModel *viewModel, const Clock &clock, QObject *parent = nullptr);

    // Whether the category asks for the lines at all.
    static bool wanted();

private:
    // What moves, read on the view model's thread and handed to the render thread.
    enum Motion : int { still = -1, drift = -2 };
    void motionChanged();
    void frameSwapped();

    QPointer<SlideshowViewModel> m_viewModel;
    const Clock &m_clock;
    // `still`, `drift` or a transition style.
    std::atomic<int> m_motion {still};
    // Render thread only.
    double m_lastFrame = 0.0;
    int m_lastMotion = still;
};

} // namespace sorvane
