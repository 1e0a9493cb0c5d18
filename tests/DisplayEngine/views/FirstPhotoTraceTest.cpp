// The launch line: logged once, for the frame that first shows a picture in any window.
#include "views/FirstPhotoTrace.h"

#include "support/LogCapture.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <array>
#include <memory>

using namespace sorvane;

namespace {

// A window with the two picture layers the trace looks for, each with its `ready` flag.
struct LayeredWindow {
    explicit LayeredWindow(QQmlEngine &engine)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nItem {\n"
                          "    Item { objectName: \"primaryLayer\"; property bool ready: false }\n"
                          "    Item { objectName: \"secondaryLayer\"; property bool ready: false }\n}\n",
            QUrl(QStringLiteral("layers.qml")));
        root.reset(qobject_cast<QQuickItem *>(component.create()));
        // As QML does for a window's items: the window's scene is their parent in both trees.
        root->setParentItem(window.contentItem());
        root->setParent(window.contentItem());
    }
    void setReady(char layer, bool ready)
    {
        const QString name = layer == 'p' ? QStringLiteral("primaryLayer") : QStringLiteral("secondaryLayer");
        root->findChild<QQuickItem *>(name)->setProperty("ready", ready);
    }

    QQuickWindow window;
    std::unique_ptr<QQuickItem> root;
};

// Steps: "tN" the launch clock reads N ms; "r1p"/"u1p" window 1's primary (or "s" secondary)
// layer turns ready/unready; "y1" window 1 synchronises its scene; "f1" it swaps a frame.
QStringList traced(const QString &script)
{
    test::LogCapture log(QStringLiteral("sorvane.views.info=true"));
    QQmlEngine engine;
    std::array<LayeredWindow, 2> windows {LayeredWindow(engine), LayeredWindow(engine)};
    qint64 now = 0;
    FirstPhotoTrace trace([&now] { return now; });
    int shown = 0;
    QObject::connect(&trace, &FirstPhotoTrace::shown, [&shown] { ++shown; });
    for (LayeredWindow &w : windows)
        trace.watch(&w.window);
    for (const QString &step : script.split(' ', Qt::SkipEmptyParts)) {
        const QChar kind = step[0];
        if (kind == 't') {
            now = step.mid(1).toLongLong();
            continue;
        }
        LayeredWindow &w = windows[step[1].digitValue() - 1];
        if (kind == 'r' || kind == 'u')
            w.setReady(step[2].toLatin1(), kind == 'r');
        else if (kind == 'y')
            Q_EMIT w.window.afterSynchronizing();
        else if (kind == 'f')
            Q_EMIT w.window.frameSwapped();
    }
    QStringList messages;
    for (const std::string &line : log.take())
        messages << QString::fromStdString(line);
    // The signal comes with the line, and only with it.
    EXPECT_EQ(shown, messages.size()) << script.toStdString();
    return messages;
}

TEST(FirstPhotoTrace, LogsTheFirstFrameThatShowsAPicture)
{
    const auto line = [](int ms) {
        return QString::fromStdString(
            test::logLine("sorvane.views", "info", QStringLiteral("First photo on screen after %1 ms").arg(ms)));
    };
    const struct {
        const char *name;
        const char *script;
        QStringList logged;
    } rows[] = {
        {"nothing ready, nothing logged", "y1 f1 y2 f2", {}},
        {"ready, synchronised, swapped", "t5 r1p y1 t7 f1 t9 f1", {line(7)}},
        {"a frame swapped before the picture joined the scene does not show it", "r1p t3 f1 y1 t9 f1", {line(9)}},
        {"the secondary layer counts too", "r2s y2 t4 f2", {line(4)}},
        {"another window's frames do not show the picture", "r1p y2 f2 y1 t6 f1", {line(6)}},
        {"only the first window to be ready", "r1p r2p y2 f2 y1 t5 f1 y2 f2", {line(5)}},
        {"a layer ready again later logs nothing more", "r1p y1 t2 f1 u1p r1p y1 t8 f1", {line(2)}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(traced(row.script).join('|').toStdString(), row.logged.join('|').toStdString()) << row.name;
}

} // namespace
