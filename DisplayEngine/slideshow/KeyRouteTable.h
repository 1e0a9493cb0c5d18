#pragma once

#include "slideshow/KeyBinding.h"

#include <QList>

#include <optional>

namespace sorvane {

// An application's keys as data: which binding leads to which action. A route may leave
// some modifiers out of the comparison (Escape that leaves whatever is held, a key that
// Shift does not change); otherwise a key matches as KeyBinding::matches says.
template <typename Action> class KeyRouteTable {
public:
    struct Route {
        KeyBinding binding;
        Action action;
        quint64 ignoredModifiers = 0;

        bool matches(const KeyBinding &pressed) const
        {
            const quint64 compared = KeyBinding::matchedFlags & ~ignoredModifiers;
            return binding.key == pressed.key && (binding.modifiers & compared) == (pressed.modifiers & compared);
        }
    };

    KeyRouteTable() = default;
    explicit KeyRouteTable(QList<Route> routes) : m_routes(std::move(routes)) { }

    // The table of bindings stored by action label (the settings' form), in the order of
    // `actions`, so a key bound twice goes to the earlier action as actionForKey() says.
    template <typename Actions, typename Label>
    static KeyRouteTable fromBindings(const KeyBindings &bindings, const Actions &actions, Label label)
    {
        QList<Route> routes;
        for (const Action action : actions) {
            const auto found = bindings.constFind(label(action));
            if (found != bindings.constEnd())
                routes.append(Route {*found, action});
        }
        return KeyRouteTable(std::move(routes));
    }

    // The action of the first route, in table order, that the pressed key matches.
    std::optional<Action> actionFor(const KeyBinding &pressed) const
    {
        for (const Route &route : m_routes)
            if (route.matches(pressed))
                return route.action;
        return std::nullopt;
    }

    const QList<Route> &routes() const { return m_routes; }

private:
    QList<Route> m_routes;
};

} // namespace sorvane
