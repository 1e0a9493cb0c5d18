#pragma once

namespace sorvane {

// Decides when the display cannot keep up with the transitions: during one transition,
// more than `lateFramesAllowed` frames each arriving more than twice the display's frame
// interval after the one before. Frames outside transitions do not count, and the first
// frame of a transition only sets the mark (the window may have been idle before it). Once
// decided it stays decided: the window falls back to cross-fades for good.
class TransitionFrameBudget {
public:
    static constexpr int kLateFramesAllowed = 2;

    explicit TransitionFrameBudget(double frameIntervalSeconds, int lateFramesAllowed = kLateFramesAllowed);

    void transitionStarted();
    void transitionEnded();
    // A frame shown at `seconds` (a monotonic clock). True exactly once: for the frame that
    // makes the transitions fall back.
    bool frameShown(double seconds);

    bool fellBehind() const { return m_fellBehind; }
    void setFrameInterval(double seconds) { m_frameInterval = seconds; }

private:
    double m_frameInterval;
    int m_lateFramesAllowed;
    bool m_inTransition = false;
    bool m_hasMark = false;
    double m_lastFrame = 0.0;
    int m_lateFrames = 0;
    bool m_fellBehind = false;
};

} // namespace sorvane
