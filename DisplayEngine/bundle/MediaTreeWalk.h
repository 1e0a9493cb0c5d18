#pragma once

#include <QFileInfo>
#include <QSet>
#include <QStringList>

#include <functional>

namespace sorvane {

// Walks picked files and folders for media by the export's rules: folders recursively in
// name order (files before subfolders), hidden files and folders skipped, as are bundles
// (folders holding a bundle.json), any folder already visited (symbolic link loops end
// there) and any file reached twice. Files are judged by their name only.
class MediaTreeWalk {
public:
    // A media file found under `root` (the picked folder, or the file's own folder when it
    // was picked itself). Returning false stops the walk.
    using Visit = std::function<bool(const QFileInfo &file, bool isVideo, const QString &root)>;

    MediaTreeWalk(bool includeVideos, Visit visit);

    // A picked file: kept even when missing or not a regular file, to be reported later.
    void addPickedFile(const QFileInfo &info);
    void addFolder(const QString &path);

    // Leaves out what a symbolic link inside a picked folder leads to outside it: a folder
    // from someone else's stick must not pull in the rest of this computer.
    void stayInsidePickedFolders(bool stay) { m_stayInside = stay; }
    // Asked before each folder is listed (a folder may hold no media for a long while);
    // true stops the walk.
    void stopWhen(std::function<bool()> stop) { m_stop = std::move(stop); }
    bool stopped() const { return m_stopped; }
    // Folders that exist but could not be listed.
    qint64 unreadableFolders() const { return m_unreadableFolders; }
    // Folders holding media files whose names are not valid UTF-8 (once per file), when
    // asked for: the toolkit cannot spell such a name, so it would vanish unnoticed.
    void noteUnnamedFiles(bool note) { m_noteUnnamed = note; }
    QStringList takeUnnamed() { return std::move(m_unnamedIn); }

private:
    // `canonicalFolder`: the real path of the folder the file was listed in, when known.
    void addFile(const QFileInfo &info, const QString &root, bool picked, const QString &canonicalFolder = {});
    void walkFolder(const QString &path, const QString &root);
    void findUnnamedFiles(const QString &folder);
    bool isOutside(const QString &canonical) const;

    bool m_includeVideos;
    Visit m_visit;
    std::function<bool()> m_stop;
    bool m_stopped = false;
    bool m_noteUnnamed = false;
    bool m_stayInside = false;
    QString m_canonicalRoot;
    qint64 m_unreadableFolders = 0;
    QSet<QString> m_seenFiles;
    QSet<QString> m_seenFolders;
    QStringList m_unnamedIn;
};

} // namespace sorvane
