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
    // The render loop may swap on its own thread: the time is taken there, when the frame
    // is shown, and the decision is made here.
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [this] {
            const double seconds = m_clock.monotonicSeconds();
            QMetaObject::invokeMethod(
                this, [this, seconds] { onFrame(seconds); }, Qt::QueuedConnection);
        },
        Qt::DirectConnection);
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
