#include "core/SlideshowAppBridge.h"

#include "core/SlideshowLog.h"
#include "slideshow/Preferences.h"
#include "slideshow/SlideshowViewModel.h"

#include <QUrl>

namespace sorvane {

SlideshowAppBridge::SlideshowAppBridge(
    QList<ExternalVideoPlayer> players, OpenVideo open, Preferences *stored, QObject *parent)
    : QObject(parent), m_players(std::move(players)), m_open(std::move(open)), m_stored(stored),
      m_hasSeenCollageIntro(stored && stored->boolValue(hasSeenCollageIntroKey).value_or(false))
{
}

void SlideshowAppBridge::collageIntroSeen()
{
    if (m_hasSeenCollageIntro)
        return;
    m_hasSeenCollageIntro = true;
    Q_EMIT hasSeenCollageIntroChanged();
    // A flag that cannot be written only means the intro comes again next time.
    if (m_stored) {
        if (const std::optional<QString> failure = m_stored->setValue(hasSeenCollageIntroKey, true))
            qCWarning(lcSlideshow, "The collage intro's flag was not kept: %s", qUtf8Printable(*failure));
    }
}

QStringList SlideshowAppBridge::videoPlayerNames() const
{
    QStringList names;
    for (const ExternalVideoPlayer &player : m_players)
        names << player.name;
    return names;
}

void SlideshowAppBridge::askTrash(const QString &windowId, const QString &fileName, Answer answer)
{
    if (m_trashAnswer)
        answerTrash(false);
    m_trashWindowId = windowId;
    m_trashFileName = fileName;
    m_trashAnswer = std::move(answer);
    Q_EMIT trashChanged();
}

void SlideshowAppBridge::answerTrash(bool confirmed)
{
    // Cleared before answering: the answer may ask again.
    Answer answer = std::exchange(m_trashAnswer, {});
    m_trashWindowId.clear();
    m_trashFileName.clear();
    Q_EMIT trashChanged();
    if (answer)
        answer(confirmed);
}

bool SlideshowAppBridge::trashQuestionTakes(const QString &windowId, const QString &key)
{
    if (!m_trashAnswer || windowId != m_trashWindowId)
        return false;
    if (key == QLatin1String("\r"))
        answerTrash(true);
    else if (key == QLatin1String("escape"))
        answerTrash(false);
    return true;
}

void SlideshowAppBridge::showShortcuts(const QString &windowId)
{
    // Asking again in the same window puts the overlay away, as a second "/" does.
    m_shortcutsWindowId = m_shortcutsWindowId == windowId ? QString() : windowId;
    Q_EMIT shortcutsWindowIdChanged();
}

void SlideshowAppBridge::hideShortcuts()
{
    if (m_shortcutsWindowId.isEmpty())
        return;
    m_shortcutsWindowId.clear();
    Q_EMIT shortcutsWindowIdChanged();
}

void SlideshowAppBridge::showTip(const QString &windowId)
{
    m_tipWindowId = windowId;
    Q_EMIT tipWindowIdChanged();
}

void SlideshowAppBridge::dismissTip()
{
    if (m_tipWindowId.isEmpty())
        return;
    m_tipWindowId.clear();
    Q_EMIT tipWindowIdChanged();
}

namespace {
std::optional<QString> currentVideoFile(QObject *object)
{
    const auto *viewModel = qobject_cast<SlideshowViewModel *>(object);
    const std::optional<ImageItem> item = viewModel ? viewModel->currentItem() : std::nullopt;
    if (!item || item->mediaType() != MediaType::video || !item->url().isLocalFile())
        return std::nullopt;
    return item->url().toLocalFile();
}
} // namespace

bool SlideshowAppBridge::showsVideo(QObject *viewModel) const
{
    return !m_players.isEmpty() && currentVideoFile(viewModel).has_value();
}

void SlideshowAppBridge::openVideo(int index, QObject *viewModel)
{
    const std::optional<QString> file = currentVideoFile(viewModel);
    if (index < 0 || index >= m_players.size() || !file)
        return;
    if (const std::optional<QString> failure = m_open(m_players[index], *file))
        qCWarning(lcSlideshow, "%s", qUtf8Printable(*failure));
}

void SlideshowAppBridge::contextMenuOpen(QObject *object, bool open)
{
    if (auto *viewModel = qobject_cast<SlideshowViewModel *>(object))
        viewModel->setPausedForContextMenu(open);
}

} // namespace sorvane
