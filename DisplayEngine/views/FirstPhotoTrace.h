#pragma once

#include <QObject>

#include <functional>

class QQuickWindow;

namespace sorvane {

// Logs once, for the first window whose picture layer becomes ready, "First photo on screen
// after N ms": N from `elapsed` read when the first frame holding that picture is swapped.
// The layers are the window's items named "primaryLayer" and "secondaryLayer", which say so
// with their `ready` property.
class FirstPhotoTrace : public QObject {
    Q_OBJECT
public:
    // Milliseconds since the launch; read on the render thread.
    using Elapsed = std::function<qint64()>;

    explicit FirstPhotoTrace(Elapsed elapsed, QObject *parent = nullptr);

    void watch(QQuickWindow *window);

Q_SIGNALS:
    // After the line; from the render thread when Qt renders on one.
    void shown();

private Q_SLOTS:
    void layerReadyChanged();

private:
    Elapsed m_elapsed;
    bool m_armed = false;
};

} // namespace sorvane
