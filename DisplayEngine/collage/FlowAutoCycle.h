#pragma once

namespace sorvane {

// Paces automatic tile cycling on a Flow wall: while it is on and the strips scroll,
// one more tile is replaced per `flowRecycleInterval` seconds, on top of the wall's
// regular changes.
class FlowAutoCycle {
public:
    // Counts `seconds` (the time the caller lets the wall change in) when cycling is
    // on and the strips scrolled meanwhile. True when a tile is due; the clock then
    // restarts from 0, so a long step never releases a burst. Turning cycling off
    // starts the next round from 0.
    bool advance(double seconds, bool flowAutoCycleTiles, bool scrolling);

    // Seconds of scrolling accumulated towards the next replacement.
    double flowRecycleClock() const { return m_flowRecycleClock; }

private:
    double m_flowRecycleClock = 0;
};

} // namespace sorvane
