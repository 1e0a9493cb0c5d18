// The reference frame for the slideshow's frame figures: a Qt Quick window with nothing in it
// but a 4-pixel square turning each frame (without it, Qt Quick would draw no frame at all).
// Prints one line a swapped frame, "Frame after N ms: empty", in the slideshow's own format.
//
//   bench_empty_window [--seconds S] [--size WxH]
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

const char *const emptyQml = R"(
import QtQuick
Window {
    color: "black"
    Rectangle {
        width: 4; height: 4; color: "#202020"
        RotationAnimation on rotation { from: 0; to: 360; duration: 1000; loops: Animation.Infinite }
    }
}
)";

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    double seconds = 20;
    int width = 1920, height = 1080;
    const QStringList args = app.arguments();
    for (qsizetype i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--seconds") && i + 1 < args.size()) {
            seconds = args[++i].toDouble();
        } else if (args[i] == QLatin1String("--size") && i + 1 < args.size()) {
            const QStringList size = args[++i].split(QLatin1Char('x'));
            width = size.value(0).toInt();
            height = size.value(1).toInt();
        } else {
            std::fprintf(stderr, "usage: bench_empty_window [--seconds S] [--size WxH]\n");
            return 2;
        }
    }
    if (seconds <= 0 || width <= 0 || height <= 0) {
        std::fprintf(stderr, "bench_empty_window: --seconds and --size must be positive\n");
        return 2;
    }

    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(emptyQml, QUrl(QStringLiteral("bench_empty_window.qml")));
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(component.create()));
    if (!window) {
        std::fprintf(stderr, "bench_empty_window: %s\n", qUtf8Printable(component.errorString()));
        return 1;
    }
    QElapsedTimer clock;
    clock.start();
    qint64 last = -1;
    // Direct: the threaded render loop swaps on its own thread.
    QObject::connect(
        window.get(), &QQuickWindow::frameSwapped, window.get(),
        [&clock, &last] {
            const qint64 now = clock.nsecsElapsed();
            if (last >= 0)
                std::fprintf(stderr, "Frame after %.1f ms: empty\n", double(now - last) / 1e6);
            last = now;
        },
        Qt::DirectConnection);
    window->setGeometry(0, 0, width, height);
    window->show();
    QTimer::singleShot(int(seconds * 1000), &app, &QCoreApplication::quit);
    const int status = app.exec();
    window.reset();
    return status;
}
