#pragma once

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace sorvane::test {

// The visible items below root (itself included) that are wanted.
inline std::vector<QQuickItem *> visibleItems(QQuickItem *root, const std::function<bool(QQuickItem *)> &wanted)
{
    std::vector<QQuickItem *> found;
    if (root->isVisible() && wanted(root))
        found.push_back(root);
    for (QQuickItem *child : root->childItems()) {
        const std::vector<QQuickItem *> below = visibleItems(child, wanted);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

inline QStringList textsIn(QQuickItem *root)
{
    QStringList texts;
    for (QQuickItem *item : visibleItems(root, [](QQuickItem *item) { return item->inherits("QQuickText"); }))
        texts << item->property("text").toString();
    return texts;
}

// One QML item made from `source` (importing QtQuick and Sorvane.Views) with its required
// properties, shown in an offscreen window of `size`.
class QmlHarness {
public:
    QmlHarness(QSize size, const QString &source, const QVariantMap &initial = {})
    {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&m_engine);
        component.setData(
            (QStringLiteral("import QtQuick\nimport Sorvane.Views\n") + source).toUtf8(), QUrl("qrc:/harness.qml"));
        // Creating from a component that failed to compile crashes this Qt: report the errors instead.
        if (!component.isReady()) {
            ADD_FAILURE() << component.errorString().toStdString();
            return;
        }
        m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(initial)));
        if (!m_root) {
            ADD_FAILURE() << component.errorString().toStdString();
            return;
        }
        m_window.resize(size);
        m_root->setSize(size);
        m_root->setParentItem(m_window.contentItem());
        m_window.show();
        settle();
    }

    bool ok() const { return m_root != nullptr; }
    QQuickItem *root() const { return m_root.get(); }
    QQuickWindow &window() { return m_window; }
    QQuickItem *find(const QString &name) const { return m_root ? m_root->findChild<QQuickItem *>(name) : nullptr; }
    // The first visible item of that name.
    QQuickItem *visible(const QString &name) const
    {
        const auto found = m_root
            ? visibleItems(m_root.get(), [&](QQuickItem *item) { return item->objectName() == name; })
            : std::vector<QQuickItem *> {};
        return found.empty() ? nullptr : found.front();
    }
    // Rendering a frame also runs the polish pass that places positioned children.
    void settle() { (void)m_window.grabWindow(); }
    void click(QPointF at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(&m_window, button, {}, at.toPoint());
        settle();
    }
    void click(QQuickItem *item) { click(item->mapToScene(QPointF(item->width() / 2, item->height() / 2))); }

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace sorvane::test
