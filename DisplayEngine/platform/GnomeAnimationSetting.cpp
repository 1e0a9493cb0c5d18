#include "platform/GnomeAnimationSetting.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <memory>
#include <utility>

namespace sorvane {

void GnomeAnimationSetting::read(std::function<void(std::optional<bool>)> answer)
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (tool.isEmpty()) {
        answer(std::nullopt);
        return;
    }
    auto *process = new QProcess;
    auto once = std::make_shared<std::function<void(std::optional<bool>)>>(std::move(answer));
    const auto finish = [process, once](std::optional<bool> value) {
        if (!*once)
            return;
        const auto call = std::exchange(*once, {});
        process->disconnect();
        process->kill();
        process->deleteLater();
        call(value);
    };
    QObject::connect(process, &QProcess::finished, process, [process, finish](int code, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit && code == 0 ? parse(process->readAllStandardOutput()) : std::nullopt);
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [finish](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(std::nullopt);
    });
    QTimer::singleShot(kTimeoutMs, process, [finish] { finish(std::nullopt); });
    process->start(tool,
        {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations")});
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
