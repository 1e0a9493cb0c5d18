#pragma once

#include "slideshow/DisplaySleepInhibitor.h"

#include <QDBusConnection>
#include <QLoggingCategory>
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
    // Who asks and why, as the desktop lists it; and where the outcome is logged (the
    // application's own category, so its log tells the whole story).
    struct Identity {
        QString applicationName;
        QString reason;
        const QLoggingCategory &(*log)() = nullptr; // the engine's category when unset
    };
    // Longest that release() waits for the service.
    static constexpr int releaseTimeoutMs = 500;

    explicit DbusScreenSaverInhibitor(Identity identity, QDBusConnection connection = QDBusConnection::sessionBus());
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
    void logInhibitFailure(const QString &why) const;
    void unInhibit(uint cookie);

    Identity m_identity;
    QDBusConnection m_connection;
    // Parent of the reply watchers, so that a reply arriving after destruction is dropped.
    std::unique_ptr<QObject> m_context;
    QDBusPendingCallWatcher *m_pending = nullptr;
    bool m_releaseOnReply = false;
    std::optional<uint> m_cookie;
};

} // namespace sorvane
