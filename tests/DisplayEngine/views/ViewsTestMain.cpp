#include <gtest/gtest.h>

#include <QGuiApplication>

// Image format plugins and Qt Quick's image responses need an application object; offscreen
// keeps the tests independent of any display.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
