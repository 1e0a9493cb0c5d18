#pragma once

#include "core/PlayerBundleChoice.h"

#include <QString>
#include <QStringList>

namespace sorvane {

// Where the player runs from and which bundle it plays. Everything is passed in, so the
// start-up rules are tested without moving executables around; the caller supplies
// QCoreApplication::applicationDirPath() and the APPIMAGE environment variable.
class PlayerLocation {
public:
    // True when a component of the path is "AppTranslocation": the system copied the
    // player to a random read-only place, away from the bundle it shipped in.
    static bool isTranslocated(const QString &path);

    // The folder holding the player as the user put it on disk. An AppImage runs from a
    // temporary mount and names its real file in APPIMAGE, so that file's folder wins
    // when the variable is not blank. A translocated folder without such a hint is
    // returned unchanged: there is no portable way to find the original.
    static QString applicationFolder(const QString &executableFolder, const QString &appImageEnv);

    // `arguments` are the command-line arguments after the program name, options removed.
    // The first one, when present, names a bundle folder or its bundle.json (relative paths
    // count from the current folder); otherwise the application folder is the bundle's
    // player/ folder and the bundle is its parent.
    static PlayerBundleChoice chooseBundle(const QString &applicationFolder, const QStringList &arguments);
};

} // namespace sorvane
