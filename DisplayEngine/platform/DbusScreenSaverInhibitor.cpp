#include "platform/DbusScreenSaverInhibitor.h"

#include "EngineLog.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QObject>

#include <utility>

namespace sorvane {

namespace {

const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
const QString path = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString screenSaverInterface = QStringLiteral("org.freedesktop.ScreenSaver");

QDBusMessage screenSaverCall(const QString &method)
{
    return QDBusMessage::createMethodCall(service, path, screenSaverInterface, method);
}

} // namespace

DbusScreenSaverInhibitor::DbusScreenSaverInhibitor(Identity identity, QDBusConnection connection)
    : m_identity(std::move(identity)), m_connection(std::move(connection)), m_context(std::make_unique<QObject>())
{
    if (!m_identity.log)
        m_identity.log = lcEngine;
}

void DbusScreenSaverInhibitor::logInhibitFailure(const QString &why) const
{
    qCWarning(m_identity.log, "Display sleep could not be inhibited: %s", qUtf8Printable(why));
}

DbusScreenSaverInhibitor::~DbusScreenSaverInhibitor()
{
    release();
}

void DbusScreenSaverInhibitor::inhibit()
{
    if (m_pending) {
        // Asked again before the reply: keep the cookie it brings after all.
        m_releaseOnReply = false;
        return;
    }
    if (m_cookie)
        return;
    if (!m_connection.isConnected()) {
        const QString why = m_connection.lastError().isValid() ? m_connection.lastError().message()
                                                               : QStringLiteral("no session bus");
        logInhibitFailure(why);
        return;
    }

    QDBusMessage call = screenSaverCall(QStringLiteral("Inhibit"));
    call << m_identity.applicationName << m_identity.reason;
    m_pending = new QDBusPendingCallWatcher(m_connection.asyncCall(call), m_context.get());
    QObject::connect(m_pending, &QDBusPendingCallWatcher::finished, m_context.get(),
        [this](QDBusPendingCallWatcher *watcher) { onInhibitReply(watcher); });
}

void DbusScreenSaverInhibitor::release()
{
    if (m_pending) {
        m_releaseOnReply = true;
        return;
    }
    if (!m_cookie)
        return;
    const uint cookie = *m_cookie;
    m_cookie.reset();
    unInhibit(cookie);
}

void DbusScreenSaverInhibitor::onInhibitReply(QDBusPendingCallWatcher *watcher)
{
    watcher->deleteLater();
    if (watcher != m_pending)
        return;
    m_pending = nullptr;
    const bool releaseNow = std::exchange(m_releaseOnReply, false);

    const QDBusPendingReply<uint> reply = *watcher;
    if (reply.isError()) {
        logInhibitFailure(reply.error().message());
        return;
    }
    const uint cookie = reply.value();
    qCInfo(m_identity.log, "Display kept awake (cookie %u)", cookie);
    if (releaseNow)
        unInhibit(cookie);
    else
        m_cookie = cookie;
}

void DbusScreenSaverInhibitor::unInhibit(uint cookie)
{
    QDBusMessage call = screenSaverCall(QStringLiteral("UnInhibit"));
    call << cookie;
    const QDBusMessage reply = m_connection.call(call, QDBus::Block, releaseTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qCWarning(m_identity.log, "Display sleep could not be released: %s", qUtf8Printable(reply.errorMessage()));
    else
        qCInfo(m_identity.log, "Display sleep released");
}

} // namespace sorvane
