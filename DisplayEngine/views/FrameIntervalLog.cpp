#include "views/FrameIntervalLog.h"

#include "slideshow/Clock.h"
#include "slideshow/SlideshowViewModel.h"
#include "views/ViewsLog.h"

#include <QQuickWindow>

namespace sorvane {

FrameIntervalLog::FrameIntervalLog(
    QQuickWindow *window, SlideshowViewModel *viewModel, const Clock &clock, QObject *parent)
    : QObject(parent), m_viewModel(viewModel), m_clock(clock)
{
    for (const auto signal :
        {&SlideshowViewModel::isTransitioningChanged, &SlideshowViewModel::activeTransitionStyleChanged,
            &SlideshowViewModel::kenBurnsProgressChanged, &SlideshowViewModel::isPausedChanged})
        connect(viewModel, signal, this, &FrameIntervalLog::motionChanged);
    // Direct: with the threaded render loop the swap happens on the render thread, and a
    // queued call would measure the event loop instead of the frames.
    connect(window, &QQuickWindow::frameSwapped, this, &FrameIntervalLog::frameSwapped, Qt::DirectConnection);
    motionChanged();
}

bool FrameIntervalLog::wanted()
{
    return lcFrames().isInfoEnabled();
}

void FrameIntervalLog::motionChanged()
{
    int motion = still;
    if (m_viewModel && m_viewModel->isTransitioning())
        motion = int(m_viewModel->activeTransitionStyle());
    else if (m_viewModel && m_viewModel->activeTransitionStyle() == TransitionStyle::kenBurns
        && !m_viewModel->isPaused() && m_viewModel->kenBurnsProgress() < 1.0)
        motion = drift;
    m_motion.store(motion);
}

void FrameIntervalLog::frameSwapped()
{
    const double now = m_clock.monotonicSeconds();
    const int motion = m_motion.load();
    if (motion != still && motion == m_lastMotion) {
        const QString what = motion == drift
            ? QStringLiteral("drift")
            : QStringLiteral("transition ") + toRaw(static_cast<TransitionStyle>(motion));
        qCInfo(lcFrames, "Frame after %.1f ms: %s", (now - m_lastFrame) * 1000.0, qUtf8Printable(what));
    }
    m_lastMotion = motion;
    m_lastFrame = now;
}

} // namespace sorvane
