#pragma once

#include "core/ControlsVisibility.h"
#include "slideshow/TimerScheduler.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <functional>
#include <optional>

namespace sorvane {

class Clock;
class PlayerControlsModel;

// Shows the controls panel while the pointer moves and hides it once the pointer
// rests. Polls the pointer on a short tick because a full-screen player gets no
// move events while the pointer sits over another screen. The model, clock and
// scheduler must outlive the controller.
class PlayerControlsController {
public:
    // The pointer's global position, in the same coordinates as the strip.
    using PointerSource = std::function<QPointF()>;

    static constexpr double tickSeconds = 0.1;
    static constexpr double bottomMargin = 48.0;

    PlayerControlsController(Clock &clock, TimerScheduler &timers, PointerSource pointer, PlayerControlsModel &model);
    ~PlayerControlsController();

    PlayerControlsController(const PlayerControlsController &) = delete;
    PlayerControlsController &operator=(const PlayerControlsController &) = delete;

    // Where a panel of the given size stands on a screen (top-left origin): centred
    // horizontally, its bottom edge bottomMargin above the screen's bottom.
    static QRectF panelRect(const QRectF &screen, const QSizeF &panel);

    // The panel's area in global coordinates; a pointer resting there keeps the panel up.
    void setStripRect(const QRectF &strip);
    QRectF stripRect() const { return m_strip; }

    // For hosts that receive move events: counts as a reading of the pointer now.
    void pointerMoved(const QPointF &globalPosition);

    bool isShown() const { return m_shown; }
    const ControlsVisibility &visibility() const { return m_visibility; }
    std::optional<QPointF> lastPointer() const { return m_lastPointer; }

private:
    void tick();
    void notePointer(const QPointF &position);
    void update();

    Clock &m_clock;
    TimerScheduler &m_timers;
    PointerSource m_pointer;
    PlayerControlsModel &m_model;
    TimerScheduler::TimerId m_timer = 0;
    ControlsVisibility m_visibility;
    std::optional<QPointF> m_lastPointer;
    QRectF m_strip;
    bool m_shown = false;
};

} // namespace sorvane
