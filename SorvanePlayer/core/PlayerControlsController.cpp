#include "core/PlayerControlsController.h"

#include "core/PlayerControlsModel.h"
#include "slideshow/Clock.h"

namespace sorvane {

PlayerControlsController::PlayerControlsController(
    Clock &clock, TimerScheduler &timers, PointerSource pointer, PlayerControlsModel &model)
    : m_clock(clock), m_timers(timers), m_pointer(std::move(pointer)), m_model(model)
{
    // Where the pointer is at start is only the reference: the panel must stay
    // down until the viewer actually moves it.
    if (m_pointer)
        m_lastPointer = m_pointer();
    m_model.setVisible(false);
    m_timer = m_timers.scheduleRepeating(tickSeconds, [this] { tick(); });
}

PlayerControlsController::~PlayerControlsController()
{
    m_timers.cancel(m_timer);
}

QRectF PlayerControlsController::panelRect(const QRectF &screen, const QSizeF &panel)
{
    return QRectF(screen.center().x() - panel.width() / 2.0, screen.bottom() - bottomMargin - panel.height(),
        panel.width(), panel.height());
}

void PlayerControlsController::setStripRect(const QRectF &strip)
{
    m_strip = strip;
    update();
}

void PlayerControlsController::pointerMoved(const QPointF &globalPosition)
{
    notePointer(globalPosition);
    update();
}

void PlayerControlsController::tick()
{
    if (m_pointer)
        notePointer(m_pointer());
    update();
}

void PlayerControlsController::notePointer(const QPointF &position)
{
    if (!m_lastPointer) {
        m_lastPointer = position;
        return;
    }
    // Exact comparison: QPointF's == is fuzzy, and any change of position is a movement.
    if (position.x() == m_lastPointer->x() && position.y() == m_lastPointer->y())
        return;
    m_lastPointer = position;
    m_visibility.lastMovement = m_clock.monotonicSeconds();
}

void PlayerControlsController::update()
{
    // The strip only holds a panel that is up; a pointer parked where the hidden
    // panel would be must not call it back without moving.
    m_visibility.pointerOnStrip = m_shown && m_lastPointer && m_strip.contains(*m_lastPointer);
    const bool wanted = m_visibility.wantsVisible(m_clock.monotonicSeconds());
    if (wanted == m_shown)
        return;
    m_shown = wanted;
    m_model.setVisible(wanted);
}

} // namespace sorvane
