#include "platform/ExternalVideoPlayers.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace sorvane {

namespace {

struct KnownPlayer {
    const char *id;
    const char *name;
    const char *program;
};

// In the order a menu offers them; the desktop's default comes last.
constexpr KnownPlayer knownPlayers[] = {
    {"vlc", "VLC", "vlc"},
    {"mpv", "mpv", "mpv"},
    {"celluloid", "Celluloid", "celluloid"},
    {"default", "Default Video Player", "xdg-open"},
};

bool isExecutableFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

} // namespace

ExternalVideoPlayers::ExternalVideoPlayers(QString searchPath, Launch launch)
    : m_searchPath((searchPath.isNull() ? qEnvironmentVariable("PATH") : searchPath)
                       .split(QDir::listSeparator(), Qt::SkipEmptyParts)),
      m_launch(launch ? std::move(launch) : [](const QString &program, const QStringList &arguments) {
          return QProcess::startDetached(program, arguments);
      })
{
}

QList<ExternalVideoPlayer> ExternalVideoPlayers::installed() const
{
    QList<ExternalVideoPlayer> players;
    if (m_searchPath.isEmpty())
        return players;
    for (const KnownPlayer &known : knownPlayers) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(known.program), m_searchPath);
        if (!program.isEmpty())
            players.append({QString::fromLatin1(known.id), QString::fromLatin1(known.name), program});
    }
    return players;
}

std::optional<ExternalVideoPlayer> ExternalVideoPlayers::chosen(const QString &programPath)
{
    if (!QFileInfo(programPath).isAbsolute() || !isExecutableFile(programPath))
        return std::nullopt;
    const QFileInfo info(programPath);
    return ExternalVideoPlayer {QStringLiteral("chosen"), info.completeBaseName(), info.absoluteFilePath()};
}

std::optional<QString> ExternalVideoPlayers::open(const ExternalVideoPlayer &player, const QString &file) const
{
    const QFileInfo video(file);
    if (!video.isFile())
        return QStringLiteral("“%1” cannot be opened because it no longer exists.").arg(video.fileName());
    if (!isExecutableFile(player.program))
        return QStringLiteral("%1 is no longer installed.").arg(player.name);
    if (!m_launch(player.program, {video.absoluteFilePath()}))
        return QStringLiteral("%1 could not be started.").arg(player.name);
    return std::nullopt;
}

} // namespace sorvane
