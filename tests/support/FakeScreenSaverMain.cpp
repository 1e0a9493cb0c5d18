// Stands in for the desktop's screen saver on a private session bus: records every
// Inhibit and UnInhibit call, one line each, so tests can check what the player asked.
//
//   sorvane-test-screensaver RECORD_FILE
//
// Lines: "Inhibit <app>\t<reason>\t<cookie>" and "UnInhibit <cookie>". Prints "ready" once
// the service is on the bus; runs until killed.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QObject>

#include <cstdio>

namespace {

class FakeScreenSaver : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit FakeScreenSaver(QFile &record) : m_record(record) { }

public Q_SLOTS:
    uint Inhibit(const QString &applicationName, const QString &reason)
    {
        const uint cookie = m_nextCookie++;
        write(QStringLiteral("Inhibit %1\t%2\t%3").arg(applicationName, reason).arg(cookie));
        return cookie;
    }

    void UnInhibit(uint cookie) { write(QStringLiteral("UnInhibit %1").arg(cookie)); }

private:
    // Written before the reply goes out, so a caller that saw the reply finds the line.
    void write(const QString &line)
    {
        m_record.write((line + u'\n').toUtf8());
        m_record.flush();
    }

    QFile &m_record;
    // Not zero, so a cookie that was never filled in does not pass for a real one.
    uint m_nextCookie = 41;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: sorvane-test-screensaver RECORD_FILE\n");
        return 2;
    }

    QFile record(arguments.at(1));
    if (!record.open(QIODevice::WriteOnly | QIODevice::Append)) {
        std::fprintf(stderr, "cannot open %s\n", qPrintable(arguments.at(1)));
        return 1;
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    FakeScreenSaver screenSaver(record);
    if (!bus.registerObject(
            QStringLiteral("/org/freedesktop/ScreenSaver"), &screenSaver, QDBusConnection::ExportAllSlots)) {
        std::fprintf(stderr, "cannot register object: %s\n", qPrintable(bus.lastError().message()));
        return 1;
    }
    if (!bus.registerService(QStringLiteral("org.freedesktop.ScreenSaver"))) {
        std::fprintf(stderr, "cannot register service: %s\n", qPrintable(bus.lastError().message()));
        return 1;
    }

    std::printf("ready\n");
    std::fflush(stdout);
    return app.exec();
}

#include "FakeScreenSaverMain.moc"
