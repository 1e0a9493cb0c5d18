#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace sorvane {

// Hands out load slots so that a wall of photos never decodes more than a few files at once.
//
// Requests that find every slot taken queue first come, first served. A request is a
// continuation rather than a blocked thread: a queued load then costs a function object, not a
// pool thread, and nothing ever waits inside the manager. All state sits behind one lock, so
// requests and releases from any thread are serialised.
//
// A continuation runs outside the lock: synchronously inside requestSlot() when a slot is free,
// otherwise on the thread whose releaseSlot() or reset() hands it the slot. Keep it short (start
// the load elsewhere) and do not call back into the manager from it while holding a lock of
// your own that its releaser may also take.
class LoadManager {
public:
    using Continuation = std::function<void()>;

    static constexpr int kDefaultMaxConcurrentLoads = 4;

    explicit LoadManager(int maxConcurrentLoads = kDefaultMaxConcurrentLoads);
    LoadManager(const LoadManager &) = delete;
    LoadManager &operator=(const LoadManager &) = delete;

    // Runs `granted` once a slot is held on its behalf; the holder must call releaseSlot() once.
    void requestSlot(Continuation granted);

    // Gives a slot back and hands it to the oldest waiting request, if any. False, and nothing
    // changes, when no slot is held: a release too many is a fault of the caller.
    bool releaseSlot();

    // Grants every waiting request at once and forgets the slots held so far. The count then
    // equals the number of requests it released, which may exceed the maximum until they release.
    void reset();

    int activeLoads() const;
    int waitingCount() const;
    int maxConcurrentLoads() const { return m_maxConcurrentLoads; }

private:
    const int m_maxConcurrentLoads;
    mutable std::mutex m_mutex;
    int m_activeLoads = 0;
    std::deque<Continuation> m_waiting;
};

} // namespace sorvane
