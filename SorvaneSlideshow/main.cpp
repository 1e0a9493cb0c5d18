// SorvaneSlideshow: plays the photos and videos of the folders and files it is given,
// full screen on one display or on every display.
#include "app/SlideshowAppDelegate.h"
#include "app/VipsSlideDecoding.h"
#include "core/SlideshowCommandLine.h"
#include "core/SlideshowLog.h"
#include "platform/DbusScreenSaverInhibitor.h"
#include "platform/LaunchClock.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlExtensionPlugin>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

int main(int argc, char *argv[])
{
    // Marks the start for the launch figure when the system cannot say when the process began.
    sorvane::LaunchClock::millisecondsSinceProcessStart();
    QGuiApplication::setApplicationName(QStringLiteral("SorvaneSlideshow"));
    QGuiApplication::setApplicationVersion(QStringLiteral(SORVANE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.sorvane.SorvaneSlideshow"));
    QGuiApplication app(argc, argv);
    // The load slots narrate every request at debug level; QT_LOGGING_RULES can ask for them.
    QLoggingCategory::setFilterRules(QStringLiteral("sorvane.engine.debug=false"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const sorvane::SlideshowCommandLine::Result parsed
        = sorvane::SlideshowCommandLine::parse(QCoreApplication::arguments().mid(1));
    if (std::holds_alternative<sorvane::SlideshowCommandLine::Help>(parsed)) {
        std::fputs(qUtf8Printable(sorvane::SlideshowCommandLine::helpText()), stdout);
        return 0;
    }
    if (std::holds_alternative<sorvane::SlideshowCommandLine::Version>(parsed)) {
        std::printf("SorvaneSlideshow %s\n", SORVANE_VERSION);
        return 0;
    }
    if (const auto *usage = std::get_if<sorvane::SlideshowCommandLine::Usage>(&parsed)) {
        std::fprintf(stderr, "SorvaneSlideshow: %s (try --help)\n", qUtf8Printable(usage->reason));
        return sorvane::SlideshowCommandLine::usageExitCode;
    }

    sorvane::VipsSlideDecoding::install();
    sorvane::SlideshowAppDelegate::Options options;
    options.run = std::get<sorvane::SlideshowRunOptions>(parsed);
    options.inhibitor
        = std::make_unique<sorvane::DbusScreenSaverInhibitor>(sorvane::DbusScreenSaverInhibitor::Identity {
            QStringLiteral("SorvaneSlideshow"), QStringLiteral("Sorvane is showing photos"), lcSlideshow});
    sorvane::SlideshowAppDelegate delegate(std::move(options));
    delegate.start();
    return app.exec();
}
