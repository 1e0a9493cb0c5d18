#include "platform/GnomeAnimationSetting.h"

#include <QProcess>
#include <QStandardPaths>

namespace sorvane {

std::optional<bool> GnomeAnimationSetting::read()
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (tool.isEmpty())
        return std::nullopt;
    QProcess process;
    process.start(tool,
        {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations")});
    if (!process.waitForFinished(kTimeoutMs)) {
        process.kill();
        process.waitForFinished(kTimeoutMs);
        return std::nullopt;
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return std::nullopt;
    return parse(process.readAllStandardOutput());
}

std::optional<bool> GnomeAnimationSetting::parse(const QByteArray &output)
{
    const QByteArray value = output.trimmed();
    if (value == "true")
        return true;
    if (value == "false")
        return false;
    return std::nullopt;
}

} // namespace sorvane
