#pragma once

#include "platform/ExternalVideoPlayer.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace sorvane {

class Preferences;

// What the windows' QML asks of the application besides the view model and the manager:
// the one dialog (confirm moving a file to the trash), the keyboard-shortcut overlay and
// the multi-monitor tip, each shown in one window (by the view model's id as text), and
// the video players installed for the context menu. Main thread only.
class SlideshowAppBridge : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString trashWindowId READ trashWindowId NOTIFY trashChanged)
    Q_PROPERTY(QString trashFileName READ trashFileName NOTIFY trashChanged)
    Q_PROPERTY(QString shortcutsWindowId READ shortcutsWindowId NOTIFY shortcutsWindowIdChanged)
    Q_PROPERTY(QString tipWindowId READ tipWindowId NOTIFY tipWindowIdChanged)
    Q_PROPERTY(QStringList videoPlayerNames READ videoPlayerNames CONSTANT)
    Q_PROPERTY(bool hasSeenCollageIntro READ hasSeenCollageIntro NOTIFY hasSeenCollageIntroChanged)

public:
    using Answer = std::function<void(bool confirmed)>;
    // Opens a file in a player; nothing on success, else why not.
    using OpenVideo = std::function<std::optional<QString>(const ExternalVideoPlayer &, const QString &file)>;

    // Where the collage intro's "seen" flag is kept, for good.
    static inline const QString hasSeenCollageIntroKey = QStringLiteral("slideshow.hasSeenCollageIntro");

    // `stored` keeps the intro's flag; it must outlive the bridge (none: the intro shows each run).
    SlideshowAppBridge(
        QList<ExternalVideoPlayer> players, OpenVideo open, Preferences *stored = nullptr, QObject *parent = nullptr);

    QString trashWindowId() const { return m_trashWindowId; }
    QString trashFileName() const { return m_trashFileName; }
    QString shortcutsWindowId() const { return m_shortcutsWindowId; }
    QString tipWindowId() const { return m_tipWindowId; }
    QStringList videoPlayerNames() const;
    bool hasSeenCollageIntro() const { return m_hasSeenCollageIntro; }

    // Asks window `windowId` to confirm; a question still open is answered "no" first.
    void askTrash(const QString &windowId, const QString &fileName, Answer answer);
    void showShortcuts(const QString &windowId);
    void showTip(const QString &windowId);

    Q_INVOKABLE void answerTrash(bool confirmed);
    // A key pressed in window `windowId` while its trash question is open answers it: Return
    // moves the file, Escape keeps it, other keys do nothing. False when no question is open
    // there, so that the key goes to the show.
    bool trashQuestionTakes(const QString &windowId, const QString &key);
    Q_INVOKABLE void hideShortcuts();
    Q_INVOKABLE void dismissTip();
    Q_INVOKABLE void collageIntroSeen();
    // True when the window's current item is a video a player could open.
    Q_INVOKABLE bool showsVideo(QObject *viewModel) const;
    // Opens the window's current video in the player at `index` of `videoPlayerNames`.
    Q_INVOKABLE void openVideo(int index, QObject *viewModel);
    // The show holds still while the window's context menu is open.
    Q_INVOKABLE void contextMenuOpen(QObject *viewModel, bool open);

Q_SIGNALS:
    void trashChanged();
    void shortcutsWindowIdChanged();
    void tipWindowIdChanged();
    void hasSeenCollageIntroChanged();

private:
    QList<ExternalVideoPlayer> m_players;
    OpenVideo m_open;
    QString m_trashWindowId;
    QString m_trashFileName;
    Answer m_trashAnswer;
    QString m_shortcutsWindowId;
    QString m_tipWindowId;
    Preferences *m_stored = nullptr;
    bool m_hasSeenCollageIntro = false;
};

} // namespace sorvane
