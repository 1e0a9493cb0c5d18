#pragma once

#include <QString>
#include <QStringList>

namespace sorvane::cli {

// Where `sorvane export --with-player` looks for the player payload when no folder is
// named: beside the sorvane executable, as the build tree and an installed tree lay it out.
class PlayerPayloadLocation {
public:
    // The file that starts the player in a payload this project makes.
    static QString entryFileName();

    // Candidate folders, most likely first, for a sorvane executable in `executableFolder`:
    // BUILD/bin/sorvane uses BUILD/payload, PREFIX/bin/sorvane uses PREFIX/lib/sorvane/player.
    static QStringList candidates(const QString &executableFolder);
};

} // namespace sorvane::cli
