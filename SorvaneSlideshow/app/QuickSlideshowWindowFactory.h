#pragma once

#include "app/QuickSlideshowWindow.h"
#include "core/SlideshowScreenNumbers.h"
#include "slideshow/SlideshowWindowFactory.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QVariantMap>

#include <functional>

class QQmlEngine;
class QScreen;

namespace sorvane {

class SlideshowManager;

// The manager's windowing on Qt Quick: the displays from QGuiApplication, numbered so
// that a display keeps its number while it is connected (and gets it back when a display
// of the same name returns), and one full-screen window per view model made from the
// application's window component. It follows the displays: a window whose display goes
// leaves with it while others remain, else moves to a display still there; a window goes
// back home when its display returns; a display that changes size takes its window along.
class QuickSlideshowWindowFactory final : public QObject, public SlideshowWindowFactory {
    Q_OBJECT

public:
    // Properties every window gets besides its view model and the manager.
    using ExtraProperties = std::function<QVariantMap(SlideshowViewModel &)>;

    QuickSlideshowWindowFactory(
        QQmlEngine &engine, QUrl component, ExtraProperties extra = {}, QuickSlideshowWindow::KeyFirst keyFirst = {});
    ~QuickSlideshowWindowFactory() override;

    // The manager the windows report to; set before the first launch. When it moves the
    // focus to another window (the focused one closed), that window takes the keyboard.
    void setManager(SlideshowManager *manager);

    QList<SlideshowScreen> screens() const override;
    std::optional<quint32> currentScreenId() const override;
    std::unique_ptr<SlideshowWindowController> createWindow(
        SlideshowViewModel &viewModel, const SlideshowScreen &screen) override;

    QList<QuickSlideshowWindow *> windows() const;
    QuickSlideshowWindow *window(const QUuid &id) const;

Q_SIGNALS:
    // A display came: the application may open a show on it.
    void screenArrived();

private:
    std::optional<SlideshowScreen> describe(QScreen *screen) const;
    QScreen *screenWithId(quint32 id) const;
    void follow(QScreen *screen);
    void screenAdded(QScreen *screen);
    void screenRemoved(QScreen *screen);
    void screenResized(QScreen *screen);
    void focusMoved();

    QQmlEngine &m_engine;
    QUrl m_component;
    ExtraProperties m_extra;
    QuickSlideshowWindow::KeyFirst m_keyFirst;
    SlideshowManager *m_manager = nullptr;
    QHash<QScreen *, quint32> m_ids;
    SlideshowScreenNumbers m_numbers;
    QList<QPointer<QuickSlideshowWindow>> m_windows;
};

} // namespace sorvane
