#include "views/FullScreenWindowFactory.h"

#include "views/ViewsLog.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>

namespace sorvane {

QQuickWindow *FullScreenWindowFactory::create(
    QQmlEngine &engine, const QUrl &url, QScreen *screen, const QVariantMap &properties)
{
    QQmlComponent component(&engine, url);
    if (!component.isReady()) {
        qCWarning(lcViews, "Window %s could not be made: %s", qUtf8Printable(url.toString()),
            qUtf8Printable(component.errorString()));
        return nullptr;
    }
    QObject *object = component.createWithInitialProperties(properties);
    auto *window = qobject_cast<QQuickWindow *>(object);
    if (!window) {
        qCWarning(lcViews, "Window %s could not be made: %s", qUtf8Printable(url.toString()),
            qUtf8Printable(component.errorString()));
        delete object;
        return nullptr;
    }
    QQmlEngine::setObjectOwnership(window, QQmlEngine::CppOwnership);
    window->setScreen(screen);
    window->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window->setColor(Qt::black);
    window->setGeometry(screen->geometry());
    window->showFullScreen();
    return window;
}

} // namespace sorvane
