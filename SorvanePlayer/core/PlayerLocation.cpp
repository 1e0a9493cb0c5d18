#include "core/PlayerLocation.h"

#include <QDir>
#include <QFileInfo>

namespace sorvane {

namespace {

const QString bundleFileName = QStringLiteral("bundle.json");

// The parent by text alone: a root made of blanks must stay blank rather than be
// resolved against the current folder.
QString parentOf(const QString &folder)
{
    const QString cleaned = QDir::cleanPath(QDir::fromNativeSeparators(folder));
    const qsizetype slash = cleaned.lastIndexOf(u'/');
    if (slash < 0)
        return {};
    if (slash == 0)
        return QStringLiteral("/");
    return cleaned.left(slash);
}

QString bundleFileIn(const QString &root)
{
    return root.endsWith(u'/') ? root + bundleFileName : root + u'/' + bundleFileName;
}

PlayerBundleChoice holding(const QString &lookedBeside)
{
    return {QString(), true, QStringLiteral("No bundle beside ") + lookedBeside + QStringLiteral("; holding")};
}

} // namespace

bool PlayerLocation::isTranslocated(const QString &path)
{
    return QDir::fromNativeSeparators(path).split(u'/').contains(QStringLiteral("AppTranslocation"));
}

QString PlayerLocation::applicationFolder(const QString &executableFolder, const QString &appImageEnv)
{
    if (!appImageEnv.trimmed().isEmpty())
        return QDir::cleanPath(QFileInfo(appImageEnv).absolutePath());
    return executableFolder;
}

PlayerBundleChoice PlayerLocation::chooseBundle(const QString &applicationFolder, const QStringList &arguments)
{
    const bool fromArgument = !arguments.isEmpty();
    const QString lookedBeside = fromArgument ? arguments.first() : applicationFolder;

    QString root;
    if (fromArgument) {
        const QString given = arguments.first().trimmed();
        if (!given.isEmpty()) {
            const QFileInfo info(QDir::current().absoluteFilePath(given));
            const bool namesBundleFile = info.fileName() == bundleFileName && !info.isDir();
            root = namesBundleFile ? info.absolutePath() : info.absoluteFilePath();
        }
    } else {
        root = parentOf(applicationFolder);
    }

    root = root.trimmed();
    if (root.isEmpty())
        return holding(lookedBeside);
    root = QDir::cleanPath(QDir::current().absoluteFilePath(root));
    if (!QFileInfo(bundleFileIn(root)).isFile())
        return holding(lookedBeside);
    return {root, false, QStringLiteral("Bundle root ") + root};
}

} // namespace sorvane
