#pragma once

#include <QQuickItem>

#include <functional>
#include <vector>

namespace sorvane {

inline void visitItems(QQuickItem *item, const std::function<void(QQuickItem *)> &visit)
{
    visit(item);
    for (QQuickItem *child : item->childItems())
        visitItems(child, visit);
}

inline std::vector<QQuickItem *> visibleItems(QQuickItem *root, const std::function<bool(QQuickItem *)> &wanted)
{
    std::vector<QQuickItem *> found;
    visitItems(root, [&](QQuickItem *item) {
        if (item->isVisible() && wanted(item))
            found.push_back(item);
    });
    return found;
}

} // namespace sorvane
