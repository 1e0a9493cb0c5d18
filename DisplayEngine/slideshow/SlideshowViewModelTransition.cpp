// The two image layers of a slideshow window, the running transition and the
// Ken Burns drift.
#include "slideshow/SlideshowViewModel.h"

#include "slideshow/Clock.h"
#include "slideshow/HostShell.h"
#include "slideshow/SlideshowTransitionChoice.h"
#include "slideshow/TransitionLayers.h"

#include <QtMath>

#include <algorithm>

namespace sorvane {

namespace {

constexpr double framePeriod = 1.0 / 60.0;
// The drift needs no more than this to look smooth.
constexpr double kenBurnsFramePeriod = 1.0 / 30.0;

double easeInOut(double t)
{
    t = std::clamp(t, 0.0, 1.0);
    return t < 0.5 ? 2 * t * t : 1 - std::pow(-2 * t + 2, 2) / 2;
}

} // namespace

void SlideshowViewModel::showCurrent(TransitionDirection direction)
{
    const std::optional<ImageItem> incoming = currentItem();
    if (!incoming)
        return;
    if (m_isTransitioning)
        finishTransition();
    const std::optional<ImageItem> &outgoing = m_isPrimaryLayerActive ? m_primaryImage : m_secondaryImage;
    const SlideshowTransitionChoice::Input input {*incoming, outgoing ? &*outgoing : nullptr,
        m_settings.transitionStyle, m_transitionBudgetFallback, m_host.prefersReducedMotion()};
    const TransitionStyle style = SlideshowTransitionChoice::choose(input, m_random());
    if (outgoing && outgoing->id() == incoming->id()) {
        // Redraw in place: the slide did not change.
        m_imageUpdateTrigger = QUuid::createUuid();
        Q_EMIT imageUpdateTriggerChanged();
    } else {
        // A new slide starts fitted; setZoom also drops the pan.
        setZoom(1.0, true);
        if (style == TransitionStyle::none || m_settings.transitionDuration <= 0)
            swapLayersAtOnce(*incoming);
        else
            startTransition(*incoming, style, direction);
    }
    updateVideoHold();
    startKenBurnsClock();
    scheduleAdvance();
}

void SlideshowViewModel::swapLayersAtOnce(const ImageItem &incoming)
{
    const bool toPrimary = !m_isPrimaryLayerActive || !m_primaryImage;
    setLayer(toPrimary, incoming);
    setLayer(!toPrimary, std::nullopt);
    if (m_isPrimaryLayerActive != toPrimary) {
        m_isPrimaryLayerActive = toPrimary;
        Q_EMIT isPrimaryLayerActiveChanged();
    }
    setLayerOpacities(toPrimary ? 1.0 : 0.0, toPrimary ? 0.0 : 1.0);
    if (m_activeTransitionStyle != TransitionStyle::none) {
        m_activeTransitionStyle = TransitionStyle::none;
        Q_EMIT activeTransitionStyleChanged();
    }
    m_outgoingKenBurnsVector = QSizeF(0, 0);
    m_outgoingKenBurnsAmount = 0;
    Q_EMIT outgoingKenBurnsVectorChanged();
    Q_EMIT outgoingKenBurnsAmountChanged();
    restartKenBurns();
}

void SlideshowViewModel::startTransition(
    const ImageItem &incoming, TransitionStyle style, TransitionDirection direction)
{
    cancelTimer(m_transitionTimer);
    m_outgoingKenBurnsVector = m_kenBurnsVector;
    m_outgoingKenBurnsAmount = m_kenBurnsProgress;
    Q_EMIT outgoingKenBurnsVectorChanged();
    Q_EMIT outgoingKenBurnsAmountChanged();
    drawKenBurnsVector();
    restartKenBurns();

    setLayer(!m_isPrimaryLayerActive, incoming);
    m_activeTransitionStyle = style;
    m_transitionDirection = direction;
    ++m_transitionGeneration;
    m_isTransitioning = true;
    m_transitionStartedAt = m_clock.monotonicSeconds();
    Q_EMIT activeTransitionStyleChanged();
    Q_EMIT transitionDirectionChanged();
    Q_EMIT isTransitioningChanged();
    setTransitionProgress(0.0);
    const qint64 generation = m_transitionGeneration;
    m_transitionTimer = m_timers.scheduleRepeating(framePeriod, [this, generation] { onTransitionFrame(generation); });
}

void SlideshowViewModel::onTransitionFrame(qint64 generation)
{
    // A frame of a transition that a newer one replaced changes nothing.
    if (generation != m_transitionGeneration || !m_isTransitioning)
        return;
    const double elapsed = m_clock.monotonicSeconds() - m_transitionStartedAt;
    const double linear = m_settings.transitionDuration > 0 ? elapsed / m_settings.transitionDuration : 1.0;
    // Frame times add up in floating point: the last frame may fall a hair short of the end.
    if (linear >= 1.0 - 1e-9) {
        finishTransition();
        return;
    }
    setTransitionProgress(easeInOut(linear));
}

void SlideshowViewModel::setTransitionProgress(double progress)
{
    m_transitionProgress = progress;
    Q_EMIT transitionProgressChanged();
    const TransitionMotion motion = currentMotion();
    const double incoming = TransitionLayers::opacity(motion, true);
    const double outgoing = TransitionLayers::opacity(motion, false);
    if (m_isPrimaryLayerActive)
        setLayerOpacities(outgoing, incoming);
    else
        setLayerOpacities(incoming, outgoing);
}

void SlideshowViewModel::finishTransition()
{
    cancelTimer(m_transitionTimer);
    if (!m_isTransitioning)
        return;
    setTransitionProgress(1.0);
    m_isTransitioning = false;
    m_isPrimaryLayerActive = !m_isPrimaryLayerActive;
    setLayer(!m_isPrimaryLayerActive, std::nullopt);
    setLayerOpacities(m_isPrimaryLayerActive ? 1.0 : 0.0, m_isPrimaryLayerActive ? 0.0 : 1.0);
    Q_EMIT isPrimaryLayerActiveChanged();
    Q_EMIT isTransitioningChanged();
}

void SlideshowViewModel::setLayer(bool primary, const std::optional<ImageItem> &item)
{
    std::optional<ImageItem> &layer = primary ? m_primaryImage : m_secondaryImage;
    const bool same = layer.has_value() == item.has_value() && (!item || layer->id() == item->id());
    if (same)
        return;
    layer = item;
    if (primary)
        Q_EMIT primaryImageChanged();
    else
        Q_EMIT secondaryImageChanged();
}

void SlideshowViewModel::setLayerOpacities(double primary, double secondary)
{
    if (!qFuzzyCompare(1.0 + m_primaryOpacity, 1.0 + primary)) {
        m_primaryOpacity = primary;
        Q_EMIT primaryOpacityChanged();
    }
    if (!qFuzzyCompare(1.0 + m_secondaryOpacity, 1.0 + secondary)) {
        m_secondaryOpacity = secondary;
        Q_EMIT secondaryOpacityChanged();
    }
}

void SlideshowViewModel::drawKenBurnsVector()
{
    // A unit vector in a random direction: every slide drifts its own way at the same pace.
    const double angle = std::uniform_real_distribution<double>(0.0, 2 * M_PI)(m_random);
    m_kenBurnsVector = QSizeF(std::cos(angle), std::sin(angle));
    Q_EMIT kenBurnsVectorChanged();
}

void SlideshowViewModel::restartKenBurns()
{
    const double now = m_clock.monotonicSeconds();
    m_kenBurnsStart = now;
    if (m_isPaused)
        m_pausedAt = now;
    m_kenBurnsProgress = 0;
    Q_EMIT kenBurnsProgressChanged();
}

void SlideshowViewModel::startKenBurnsClock()
{
    cancelTimer(m_kenBurnsTimer);
    if (m_activeTransitionStyle != TransitionStyle::kenBurns || m_isPaused || !m_isActive || !m_kenBurnsStart)
        return;
    m_kenBurnsTimer = m_timers.scheduleRepeating(kenBurnsFramePeriod, [this] { onKenBurnsFrame(); });
}

void SlideshowViewModel::onKenBurnsFrame()
{
    if (!m_kenBurnsStart)
        return;
    // The drift runs through the transition and the whole hold of the slide.
    const double span = m_slideDuration + std::max(0.0, m_settings.transitionDuration);
    const double amount = std::clamp((m_clock.monotonicSeconds() - *m_kenBurnsStart) / span, 0.0, 1.0);
    m_kenBurnsProgress = amount;
    Q_EMIT kenBurnsProgressChanged();
    if (amount >= 1.0)
        cancelTimer(m_kenBurnsTimer);
}

} // namespace sorvane
