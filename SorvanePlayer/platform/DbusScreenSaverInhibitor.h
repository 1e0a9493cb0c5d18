#pragma once

#include "slideshow/DisplaySleepInhibitor.h"

#include <QDBusConnection>
#include <QString>

#include <memory>
#include <optional>

class QDBusPendingCallWatcher;
class QObject;

namespace sorvane {

// Keeps the display awake through the desktop's org.freedesktop.ScreenSaver service.
// Asking never waits for the bus: the cookie is recorded when the reply comes back in
// the event loop of the thread that asked. Giving back waits a little, because it
// happens at quit and must reach the bus before the process ends.
class DbusScreenSaverInhibitor final : public DisplaySleepInhibitor {
public:
    static constexpr const char *applicationName = "SorvanePlayer";
    static constexpr const char *reason = "Slidora is showing photos";
    // Longest that release() waits for the service.
    static constexpr int releaseTimeoutMs = 500;

    explicit DbusScreenSaverInhibitor(QDBusConnection connection = QDBusConnection::sessionBus());
    // Releases a held cookie.
    ~DbusScreenSaverInhibitor() override;
    DbusScreenSaverInhibitor(const DbusScreenSaverInhibitor &) = delete;
    DbusScreenSaverInhibitor &operator=(const DbusScreenSaverInhibitor &) = delete;

    void inhibit() override;
    // Before the reply to inhibit() has arrived, the release happens when it does.
    void release() override;

    // The service granted the inhibit and it has not been released.
    bool isHeld() const { return m_cookie.has_value(); }
    std::optional<uint> cookie() const { return m_cookie; }
    // An inhibit call awaits its reply.
    bool isPending() const { return m_pending != nullptr; }

private:
    void onInhibitReply(QDBusPendingCallWatcher *watcher);
    void unInhibit(uint cookie);

    QDBusConnection m_connection;
    // Parent of the reply watchers, so that a reply arriving after destruction is dropped.
    std::unique_ptr<QObject> m_context;
    QDBusPendingCallWatcher *m_pending = nullptr;
    bool m_releaseOnReply = false;
    std::optional<uint> m_cookie;
};

} // namespace sorvane
