#include "views/TransitionFrameWatcher.h"

#include "slideshow/Clock.h"
#include "slideshow/SlideshowViewModel.h"
#include "views/ViewsLog.h"

#include <QQuickWindow>
#include <QScreen>

namespace sorvane {

namespace {

constexpr double kAssumedRefreshRate = 60.0;

double frameIntervalOf(const QQuickWindow *window)
{
    const QScreen *screen = window ? window->screen() : nullptr;
    const double rate = screen ? screen->refreshRate() : 0.0;
    return 1.0 / (rate > 1.0 ? rate : kAssumedRefreshRate);
}

} // namespace

const char *const TransitionFrameWatcher::kFallbackMessage = "Transitions fall back to cross-fades: frames fell behind";

TransitionFrameWatcher::TransitionFrameWatcher(
    QQuickWindow *window, SlideshowViewModel *viewModel, const Clock &clock, QObject *parent)
    : QObject(parent), m_window(window), m_viewModel(viewModel), m_clock(clock), m_budget(frameIntervalOf(window))
{
    connect(
        viewModel, &SlideshowViewModel::isTransitioningChanged, this, &TransitionFrameWatcher::onTransitioningChanged);
    connect(window, &QWindow::screenChanged, this, [this] { m_budget.setFrameInterval(frameIntervalOf(m_window)); });
    // Emitted on this thread once per frame, before the scene is handed to the render
    // thread: its cadence is the window's frame rate, with no clock read on the render thread.
    connect(window, &QQuickWindow::afterAnimating, this, [this] { onFrame(m_clock.monotonicSeconds()); });
    if (viewModel->isTransitioning())
        m_budget.transitionStarted();
}

void TransitionFrameWatcher::onTransitioningChanged()
{
    if (m_viewModel && m_viewModel->isTransitioning())
        m_budget.transitionStarted();
    else
        m_budget.transitionEnded();
}

void TransitionFrameWatcher::onFrame(double seconds)
{
    if (!m_budget.frameShown(seconds) || !m_viewModel)
        return;
    m_viewModel->setTransitionBudgetFallback(true);
    qCInfo(lcViews, "%s", kFallbackMessage);
}

} // namespace sorvane
