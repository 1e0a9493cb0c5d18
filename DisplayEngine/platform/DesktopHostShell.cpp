#include "platform/DesktopHostShell.h"

#include "media/ImageItem.h"
#include "slideshow/Preferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace sorvane {

namespace {

void trash(const ImageItem &item, const HostShell::TrashDone &done)
{
    const QString name = item.url().fileName();
    if (!item.url().isLocalFile()) {
        done(HostShell::TrashOutcome::failed,
            QStringLiteral("“%1” is not a file on this computer, so it cannot be moved to the trash.").arg(name));
        return;
    }
    QFile file(item.url().toLocalFile());
    if (!file.exists()) {
        done(HostShell::TrashOutcome::failed,
            QStringLiteral("“%1” could not be moved to the trash because it no longer exists.").arg(name));
        return;
    }
    // Qt moves the file into the working folder when the user's data folder does not exist
    // yet (a fresh account); the freedesktop trash rules have it made.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    const QString original = file.fileName();
    QString inTrash;
    if (!QFile::moveToTrash(original, &inTrash)) {
        done(HostShell::TrashOutcome::failed, QStringLiteral("“%1” could not be moved to the trash.").arg(name));
        return;
    }
    if (QFileInfo(inTrash).isRelative()) {
        // No trash was found after all: put the file back rather than leave it somewhere odd.
        QFile::rename(inTrash, original);
        QFile::remove(QStringLiteral("info/%1.trashinfo").arg(QFileInfo(inTrash).fileName()));
        done(HostShell::TrashOutcome::failed,
            QStringLiteral("“%1” could not be moved to the trash because there is no trash folder.").arg(name));
        return;
    }
    done(HostShell::TrashOutcome::moved, {});
}

} // namespace

const QString DesktopHostShell::reduceMotionKey = QStringLiteral("accessibility.reduceMotion");

DesktopHostShell::DesktopHostShell(
    const Preferences &preferences, ConfirmTrash confirm, const ReadAnimationsEnabled &readAnimations)
    : m_preferences(preferences), m_confirm(std::move(confirm)), m_alive(std::make_shared<bool>(true))
{
    if (!readAnimations)
        return;
    std::weak_ptr<bool> alive = m_alive;
    readAnimations([this, alive](std::optional<bool> enabled) {
        if (!alive.expired())
            m_animationsEnabled = enabled;
    });
}

DesktopHostShell::~DesktopHostShell() = default;

void DesktopHostShell::moveToTrash(const ImageItem &item, TrashDone done)
{
    if (!m_confirm) {
        done(TrashOutcome::failed, QStringLiteral("This application cannot ask before moving files to the trash."));
        return;
    }
    // The answer may come from a dialog long after this returns, or twice from a careless
    // caller: only the first answer counts, and none once the shell is gone.
    auto answered = std::make_shared<bool>(false);
    std::weak_ptr<bool> alive = m_alive;
    m_confirm(item, [item, done = std::move(done), answered, alive](bool confirmed) {
        if (*answered || alive.expired())
            return;
        *answered = true;
        if (confirmed)
            trash(item, done);
        else
            done(TrashOutcome::cancelled, {});
    });
}

bool DesktopHostShell::prefersReducedMotion() const
{
    if (m_animationsEnabled)
        return !*m_animationsEnabled;
    return m_preferences.boolValue(reduceMotionKey).value_or(false);
}

} // namespace sorvane
