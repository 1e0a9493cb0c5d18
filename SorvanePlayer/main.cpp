// SorvanePlayer: plays the bundle it lives in, full screen on every display.
#include "EngineLog.h"
#include "app/PlayerAppDelegate.h"
#include "core/PlayerLocation.h"
#include "core/SingleInstanceLock.h"
#include "platform/DbusScreenSaverInhibitor.h"
#include "platform/LaunchClock.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

int main(int argc, char *argv[])
{
    sorvane::LaunchClock::millisecondsSinceProcessStart();
    QGuiApplication::setApplicationName(QStringLiteral("SorvanePlayer"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.sorvane.SorvanePlayer"));
    QGuiApplication app(argc, argv);
    // The load slots narrate every request at debug level; QT_LOGGING_RULES can ask for them.
    QLoggingCategory::setFilterRules(QStringLiteral("sorvane.engine.debug=false"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Plays a Sorvane slideshow bundle full screen on every display.\n"
                       "Inside a bundle it plays the bundle it lives in; an installed player plays the bundle\n"
                       "folder (or bundle.json) it is given. Keys: Space pause, Left/Right previous/next,\n"
                       "1/2/3 photo wall/memory table/classic, Escape or Ctrl+Q quit."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("bundle"),
        QStringLiteral("Bundle folder or its bundle.json (optional)."), QStringLiteral("[bundle]"));
    parser.process(app);

    // A second copy quits silently; the first one keeps the screens.
    sorvane::SingleInstanceLock lock(sorvane::SingleInstanceLock::defaultFolder());
    if (lock.tryAcquire() == sorvane::SingleInstanceLock::Outcome::heldElsewhere) {
        qCInfo(lcPlayer, "Another copy is running; quitting");
        return 0;
    }

    sorvane::PlayerAppDelegate::Options options;
    options.applicationFolder = sorvane::PlayerLocation::applicationFolder(
        QCoreApplication::applicationDirPath(), qEnvironmentVariable("APPIMAGE"));
    options.bundleArguments = parser.positionalArguments();
    options.inhibitor
        = std::make_unique<sorvane::DbusScreenSaverInhibitor>(sorvane::DbusScreenSaverInhibitor::Identity {
            QStringLiteral("SorvanePlayer"), QStringLiteral("Slidora is showing photos"), lcPlayer});
    sorvane::PlayerAppDelegate delegate(std::move(options));
    delegate.start();
    return app.exec();
}
