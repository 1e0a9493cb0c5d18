#include "app/QuickSlideshowWindowFactory.h"

#include "core/SlideshowLog.h"
#include "core/SlideshowScreenLoss.h"
#include "slideshow/SlideshowManager.h"
#include "slideshow/SlideshowViewModel.h"
#include "views/FullScreenWindowFactory.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QScreen>
#include <QSet>

namespace sorvane {

QuickSlideshowWindowFactory::QuickSlideshowWindowFactory(
    QQmlEngine &engine, QUrl component, ExtraProperties extra, QuickSlideshowWindow::KeyFirst keyFirst)
    : m_engine(engine), m_component(std::move(component)), m_extra(std::move(extra)), m_keyFirst(std::move(keyFirst))
{
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &QuickSlideshowWindowFactory::screenAdded);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &QuickSlideshowWindowFactory::screenRemoved);
}

QuickSlideshowWindowFactory::~QuickSlideshowWindowFactory() = default;

void QuickSlideshowWindowFactory::setManager(SlideshowManager *manager)
{
    if (m_manager)
        disconnect(m_manager, nullptr, this, nullptr);
    m_manager = manager;
    if (m_manager)
        connect(
            m_manager, &SlideshowManager::focusedSlideshowIdChanged, this, &QuickSlideshowWindowFactory::focusMoved);
}

void QuickSlideshowWindowFactory::focusMoved()
{
    // Only while the application has the keyboard: a show never takes it from another program.
    QuickSlideshowWindow *focused = window(m_manager->focusedSlideshowId());
    if (focused && QGuiApplication::focusWindow() && !focused->window()->isActive())
        focused->window()->requestActivate();
}

QList<SlideshowScreen> QuickSlideshowWindowFactory::screens() const
{
    QList<SlideshowScreen> screens;
    for (QScreen *screen : QGuiApplication::screens()) {
        if (const std::optional<SlideshowScreen> described = describe(screen))
            screens.append(*described);
    }
    return screens;
}

std::optional<quint32> QuickSlideshowWindowFactory::currentScreenId() const
{
    const QWindow *focused = QGuiApplication::focusWindow();
    if (!focused || !m_ids.contains(focused->screen()))
        return std::nullopt;
    return m_ids.value(focused->screen());
}

std::unique_ptr<SlideshowWindowController> QuickSlideshowWindowFactory::createWindow(
    SlideshowViewModel &viewModel, const SlideshowScreen &screen)
{
    QScreen *target = screenWithId(screen.id);
    if (!target || !m_manager)
        return nullptr;
    QVariantMap properties = m_extra ? m_extra(viewModel) : QVariantMap {};
    properties.insert(QStringLiteral("viewModel"), QVariant::fromValue<QObject *>(&viewModel));
    properties.insert(QStringLiteral("manager"), QVariant::fromValue<QObject *>(m_manager));
    QQuickWindow *window = FullScreenWindowFactory::create(m_engine, m_component, target, properties);
    if (!window)
        return nullptr;
    auto controller = std::make_unique<QuickSlideshowWindow>(
        window, viewModel, *m_manager, screen, [this](QScreen *s) { return describe(s); }, m_keyFirst);
    m_windows.append(controller.get());
    qCInfo(lcSlideshow, "Window opened on display %s (%d×%d)", qUtf8Printable(screen.name), screen.geometry.width(),
        screen.geometry.height());
    return controller;
}

QList<QuickSlideshowWindow *> QuickSlideshowWindowFactory::windows() const
{
    QList<QuickSlideshowWindow *> live;
    for (const QPointer<QuickSlideshowWindow> &window : m_windows) {
        if (window && window->window() && window->window()->isVisible())
            live.append(window);
    }
    return live;
}

QuickSlideshowWindow *QuickSlideshowWindowFactory::window(const QUuid &id) const
{
    for (QuickSlideshowWindow *window : windows()) {
        if (window->id() == id)
            return window;
    }
    return nullptr;
}

std::optional<SlideshowScreen> QuickSlideshowWindowFactory::describe(QScreen *screen) const
{
    const auto it = m_ids.constFind(screen);
    if (!screen || it == m_ids.cend())
        return std::nullopt;
    return SlideshowScreen {*it, screen->name(), screen->geometry()};
}

QScreen *QuickSlideshowWindowFactory::screenWithId(quint32 id) const
{
    return m_ids.key(id, nullptr);
}

void QuickSlideshowWindowFactory::follow(QScreen *screen)
{
    const QList<quint32> connected = m_ids.values();
    m_ids.insert(screen, m_numbers.numberFor(screen->name(), QSet<quint32>(connected.begin(), connected.end())));
    connect(screen, &QScreen::geometryChanged, this, [this, screen] { screenResized(screen); });
}

void QuickSlideshowWindowFactory::screenAdded(QScreen *screen)
{
    follow(screen);
    const quint32 id = m_ids.value(screen);
    qCInfo(lcSlideshow, "Display %s connected", qUtf8Printable(screen->name()));
    for (QuickSlideshowWindow *window : windows()) {
        if (window->home().id == id)
            window->moveTo(screen);
    }
    Q_EMIT screenArrived();
}

void QuickSlideshowWindowFactory::screenRemoved(QScreen *screen)
{
    const quint32 gone = m_ids.take(screen);
    disconnect(screen, nullptr, this, nullptr);
    qCInfo(lcSlideshow, "Display %s disconnected", qUtf8Printable(screen->name()));
    QScreen *fallback = nullptr;
    for (QScreen *remaining : QGuiApplication::screens()) {
        if (remaining != screen) {
            fallback = remaining;
            break;
        }
    }
    QList<SlideshowScreenLoss::Window> placed;
    for (QuickSlideshowWindow *window : windows())
        placed.append({window->id(), window->placedOn()});
    const SlideshowScreenLoss::Outcome outcome = SlideshowScreenLoss::afterRemoval(placed, gone, fallback != nullptr);
    for (const QUuid &id : outcome.move) {
        if (QuickSlideshowWindow *moving = window(id))
            moving->moveTo(fallback);
    }
    for (const QUuid &id : outcome.close) {
        if (QuickSlideshowWindow *closing = window(id))
            closing->close();
        m_manager->windowClosed(id);
    }
}

void QuickSlideshowWindowFactory::screenResized(QScreen *screen)
{
    const std::optional<SlideshowScreen> described = describe(screen);
    if (!described)
        return;
    for (QuickSlideshowWindow *window : windows()) {
        if (window->placedOn() == described->id)
            window->moveTo(screen);
    }
}

} // namespace sorvane
