#pragma once

#include "slideshow/KeyRouteTable.h"
#include "views/KeyEventBinding.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QObject>
#include <QWindow>

#include <functional>

namespace sorvane {

// Takes every key press of the application, finds its action in a table of bindings and
// hands it to the handler. A key the table knows is swallowed, handled or not, so that it
// never reaches another window; any other key goes on as usual. The application installs
// it once (it filters the application object) and keeps its own keys in the table.
template <typename Action> class KeyActionRouter : public QObject {
public:
    using Handler = std::function<void(Action)>;
    // How a key press reads as a binding; an application may read some keys by their
    // place on the keyboard instead of the character they type.
    using Reading = std::function<std::optional<KeyBinding>(const QKeyEvent &)>;

    KeyActionRouter(KeyRouteTable<Action> table, Handler handler, Reading reading = &KeyEventBinding::fromKeyEvent)
        : m_table(std::move(table)), m_handler(std::move(handler)), m_reading(std::move(reading))
    {
    }
    ~KeyActionRouter() override { stop(); }

    void start()
    {
        if (auto *application = QCoreApplication::instance())
            application->installEventFilter(this);
    }
    void stop()
    {
        if (auto *application = QCoreApplication::instance())
            application->removeEventFilter(this);
    }

    std::optional<Action> actionFor(const QKeyEvent &event) const
    {
        const std::optional<KeyBinding> pressed = m_reading(event);
        return pressed ? m_table.actionFor(*pressed) : std::nullopt;
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // A window and each of its items see the same key; it is acted on once, at the window.
        if (event->type() != QEvent::KeyPress || !qobject_cast<QWindow *>(watched))
            return QObject::eventFilter(watched, event);
        const std::optional<Action> action = actionFor(*static_cast<QKeyEvent *>(event));
        if (!action)
            return QObject::eventFilter(watched, event);
        // The handler may end the router's owner (an exit key does), so it runs from a copy.
        if (Handler handler = m_handler)
            handler(*action);
        return true;
    }

private:
    KeyRouteTable<Action> m_table;
    Handler m_handler;
    Reading m_reading;
};

} // namespace sorvane
