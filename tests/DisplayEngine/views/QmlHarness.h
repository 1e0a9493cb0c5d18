#pragma once

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <memory>

namespace sorvane::test {

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
    template <typename T = QQuickItem> T *find(const QString &name) const
    {
        return m_root ? m_root->findChild<T *>(name) : nullptr;
    }
    // Rendering a frame also runs the polish pass that places positioned children.
    void settle() { (void)m_window.grabWindow(); }

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_root;
};

} // namespace sorvane::test
