#pragma once

#include <QUrl>
#include <QVariantMap>

class QQmlEngine;
class QQuickWindow;
class QScreen;

namespace sorvane {

// Makes full-screen show windows: frameless, above other windows, black, covering one
// screen each (what a screen saver's window level is on other systems).
class FullScreenWindowFactory {
public:
    // The window made from a QML component whose root is a Window, or null with a
    // log line when the component fails (a broken install must not crash the show).
    static QQuickWindow *create(
        QQmlEngine &engine, const QUrl &component, QScreen *screen, const QVariantMap &properties);
};

} // namespace sorvane
