#pragma once

#include "platform/ExternalVideoPlayer.h"

#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

namespace sorvane {

// The video players installed on this computer and opening a file in one. Only players
// found on the search path are offered; a program the user chose is checked the same way.
class ExternalVideoPlayers {
public:
    // Starts a program detached from this process; false when it could not be started.
    using Launch = std::function<bool(const QString &program, const QStringList &arguments)>;

    // `searchPath` is a PATH-style list; by default the process's PATH and QProcess::startDetached.
    explicit ExternalVideoPlayers(QString searchPath = {}, Launch launch = {});

    // VLC, mpv, Celluloid and the desktop's default (xdg-open), those that are installed, in that order.
    QList<ExternalVideoPlayer> installed() const;
    // A program the user picked; nothing unless it is an executable file.
    static std::optional<ExternalVideoPlayer> chosen(const QString &programPath);

    // Opens `file` in `player`. Nothing on success, otherwise a sentence saying why not.
    std::optional<QString> open(const ExternalVideoPlayer &player, const QString &file) const;

private:
    QStringList m_searchPath;
    Launch m_launch;
};

} // namespace sorvane
