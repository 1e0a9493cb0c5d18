#include "views/FirstPhotoTrace.h"

#include "views/ViewsLog.h"

#include <QMetaMethod>
#include <QQuickItem>
#include <QQuickWindow>

namespace sorvane {

FirstPhotoTrace::FirstPhotoTrace(Elapsed elapsed, QObject *parent) : QObject(parent), m_elapsed(std::move(elapsed)) { }

void FirstPhotoTrace::watch(QQuickWindow *window)
{
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("layerReadyChanged()"));
    for (const char *name : {"primaryLayer", "secondaryLayer"}) {
        QQuickItem *layer = window->findChild<QQuickItem *>(QLatin1String(name));
        const int ready = layer ? layer->metaObject()->indexOfProperty("ready") : -1;
        if (ready < 0) {
            qCWarning(lcViews, "No %s to trace the first photo by", name);
            continue;
        }
        connect(layer, layer->metaObject()->property(ready).notifySignal(), this, slot);
    }
}

void FirstPhotoTrace::layerReadyChanged()
{
    auto *layer = qobject_cast<QQuickItem *>(sender());
    QQuickWindow *window = layer ? layer->window() : nullptr;
    if (m_armed || !window || !layer->property("ready").toBool())
        return;
    m_armed = true;
    // The picture joins the scene at the next synchronisation; the frame swapped after that
    // one shows it. Both come on the render thread when Qt renders on one.
    connect(
        window, &QQuickWindow::afterSynchronizing, this,
        [this, window] {
            connect(
                window, &QQuickWindow::frameSwapped, this,
                [this] {
                    qCInfo(lcViews, "First photo on screen after %lld ms", m_elapsed());
                    Q_EMIT shown();
                },
                static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
        },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    window->update();
}

} // namespace sorvane
