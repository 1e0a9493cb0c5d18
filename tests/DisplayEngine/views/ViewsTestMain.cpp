#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QQuickWindow>

// Image format plugins and Qt Quick's image responses need an application object; offscreen
// keeps the tests independent of any display, and has no GPU: Qt Quick renders in software.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
