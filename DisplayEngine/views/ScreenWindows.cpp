#include "views/ScreenWindows.h"

#include <QGuiApplication>
#include <QScreen>

namespace sorvane {

ScreenWindows::ScreenWindows(Factory factory, TimerScheduler &timers, QObject *parent)
    : QObject(parent), m_factory(std::move(factory)), m_timers(timers)
{
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        follow(screen);
        scheduleRebuild();
    });
    connect(qApp, &QGuiApplication::screenRemoved, this, &ScreenWindows::scheduleRebuild);
}

ScreenWindows::~ScreenWindows()
{
    close();
}

void ScreenWindows::follow(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &ScreenWindows::scheduleRebuild, Qt::UniqueConnection);
}

void ScreenWindows::scheduleRebuild()
{
    if (m_settle)
        m_timers.cancel(*m_settle);
    m_settle = m_timers.scheduleOnce(settleSeconds, [this] {
        m_settle.reset();
        rebuild();
    });
}

void ScreenWindows::rebuild()
{
    if (!m_open)
        return;
    Q_EMIT screensChanged();
    // A handler may have closed the windows (the application is quitting).
    if (!m_open)
        return;
    build();
    Q_EMIT rebuilt();
}

void ScreenWindows::build()
{
    close();
    m_open = true;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (qsizetype index = 0; index < screens.size(); ++index) {
        if (QQuickWindow *window = m_factory(screens[index], int(index)))
            m_windows << window;
    }
    if (!m_windows.isEmpty())
        m_windows.first()->requestActivate();
}

void ScreenWindows::close()
{
    m_open = false;
    if (m_settle) {
        m_timers.cancel(*m_settle);
        m_settle.reset();
    }
    for (const auto &window : std::as_const(m_windows)) {
        if (window) {
            window->hide();
            window->deleteLater();
        }
    }
    m_windows.clear();
}

QList<QQuickWindow *> ScreenWindows::windows() const
{
    QList<QQuickWindow *> live;
    for (const auto &window : m_windows)
        if (window)
            live << window.data();
    return live;
}

} // namespace sorvane
