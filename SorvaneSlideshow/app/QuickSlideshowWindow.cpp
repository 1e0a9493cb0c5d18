#include "app/QuickSlideshowWindow.h"

#include "core/SlideshowKeyRoute.h"
#include "core/SlideshowLog.h"
#include "slideshow/SlideshowManager.h"
#include "slideshow/SlideshowViewModel.h"
#include "views/KeyEventBinding.h"

#include <QKeyEvent>
#include <QScreen>

namespace sorvane {

QuickSlideshowWindow::QuickSlideshowWindow(QQuickWindow *window, SlideshowViewModel &viewModel,
    SlideshowManager &manager, SlideshowScreen home, ScreenOf screenOf, KeyFirst keyFirst)
    : m_window(window), m_viewModel(viewModel), m_manager(manager), m_id(viewModel.id()), m_home(std::move(home)),
      m_screenOf(std::move(screenOf)), m_keyFirst(std::move(keyFirst)), m_placedOn(m_home.id)
{
    m_window->installEventFilter(this);
    connect(m_window, &QWindow::activeChanged, this, [this] {
        if (m_window && m_window->isActive())
            m_manager.windowFocused(m_id);
    });
    // An item can change without the index changing (a file left the show), and back.
    connect(&m_viewModel, &SlideshowViewModel::currentIndexChanged, this, &QuickSlideshowWindow::itemChanged);
    connect(
        &m_viewModel, &SlideshowViewModel::currentImageRealFilenameChanged, this, &QuickSlideshowWindow::itemChanged);
}

QuickSlideshowWindow::~QuickSlideshowWindow()
{
    if (m_window) {
        m_window->removeEventFilter(this);
        // Now, not later: the view model it draws from goes right after this controller.
        delete m_window.data();
    }
}

void QuickSlideshowWindow::show(bool fullScreen)
{
    if (!m_window)
        return;
    if (fullScreen) {
        m_window->showFullScreen();
    } else {
        m_window->showNormal();
    }
    m_window->requestActivate();
}

void QuickSlideshowWindow::setFullScreen(bool fullScreen)
{
    if (!m_window)
        return;
    if (fullScreen) {
        m_window->setFlags(m_window->flags() | Qt::FramelessWindowHint);
        m_window->showFullScreen();
        return;
    }
    // Out of full screen the window is an ordinary one: a frame, and half the display.
    m_window->setFlags((m_window->flags() & ~Qt::FramelessWindowHint) & ~Qt::WindowStaysOnTopHint);
    const QRect area = m_window->screen() ? m_window->screen()->availableGeometry() : m_window->geometry();
    m_window->showNormal();
    m_window->setGeometry(QRect(area.topLeft() + QPoint(area.width() / 4, area.height() / 4), area.size() / 2));
}

bool QuickSlideshowWindow::isFullScreen() const
{
    return m_window && m_window->visibility() == QWindow::FullScreen;
}

void QuickSlideshowWindow::close()
{
    m_closing = true;
    if (m_window)
        m_window->close();
}

std::optional<SlideshowScreen> QuickSlideshowWindow::screen() const
{
    return m_window ? m_screenOf(m_window->screen()) : std::nullopt;
}

void QuickSlideshowWindow::moveTo(QScreen *screen)
{
    if (!m_window || !screen)
        return;
    const bool fullScreen = isFullScreen();
    if (const std::optional<SlideshowScreen> described = m_screenOf(screen))
        m_placedOn = described->id;
    m_window->setScreen(screen);
    if (fullScreen) {
        m_window->setGeometry(screen->geometry());
        m_window->showFullScreen();
    } else {
        const QRect area = screen->availableGeometry();
        m_window->setGeometry(QRect(area.topLeft() + QPoint(area.width() / 4, area.height() / 4), area.size() / 2));
    }
}

void QuickSlideshowWindow::itemChanged()
{
    if (!lcSlideshowItems().isDebugEnabled())
        return;
    const std::optional<ImageItem> item = m_viewModel.currentItem();
    const QUrl shown = item ? item->url() : QUrl();
    if (shown == m_shown || shown.isEmpty())
        return;
    m_shown = shown;
    qCDebug(lcSlideshowItems, "Screen %u shows %s", m_placedOn, qUtf8Printable(shown.toLocalFile()));
}

bool QuickSlideshowWindow::eventFilter(QObject *watched, QEvent *event)
{
    // A close from the window manager (not from us): the manager forgets the window.
    if (watched == m_window && event->type() == QEvent::Close && !m_closing) {
        m_closing = true;
        m_manager.windowClosed(m_id);
    }
    if (watched == m_window && event->type() == QEvent::KeyPress) {
        // Keys the show does not know go on to the window's items.
        if (keyPressed(*static_cast<QKeyEvent *>(event)))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

bool QuickSlideshowWindow::keyPressed(const QKeyEvent &event)
{
    const std::optional<KeyBinding> pressed = KeyEventBinding::fromKeyEvent(event);
    if (pressed && m_keyFirst && m_keyFirst(m_id, *pressed))
        return true;
    const std::optional<SlideshowAction> action
        = pressed ? SlideshowKeyRoute::actionFor(m_viewModel.settings().keyBindings, *pressed) : std::nullopt;
    if (!action)
        return false;
    // The manager may close this window; it keeps it alive until the run loop returns.
    m_manager.perform(m_id, *action);
    return true;
}

} // namespace sorvane
