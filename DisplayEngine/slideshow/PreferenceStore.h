#pragma once

#include "slideshow/Preferences.h"

#include <QJsonObject>
#include <QStringList>

namespace sorvane {

// An application's preferences in one JSON file, `preferences.json` in the
// folder given. Each key maps to {"type": ..., "value": ...}: JSON alone cannot
// tell 4 from 4.0, and readers depend on the type. The file is read once here;
// a file that is missing, unreadable or not such an object reads as empty. Every
// write reads the file again and changes only its own keys, so two stores on one
// file do not undo each other's writes, then replaces the file atomically. A file
// that is not such an object is first renamed aside ("preferences.json.unreadable-
// DATE"), so that a write never silently destroys what it could not read.
class PreferenceStore final : public Preferences {
public:
    explicit PreferenceStore(const QString &folder);

    // The user's configuration folder of this application.
    static QString standardFolder();

    const QString &filePath() const { return m_filePath; }
    // The keys as last read or written, so that a run can copy them into memory.
    QStringList keys() const { return m_entries.keys(); }

    std::optional<PreferenceValue> value(const QString &key) const override;
    // On failure the file and this store keep their previous values.
    std::optional<QString> setValues(const QList<Entry> &entries) override;
    std::optional<QString> remove(const QString &key) override;

private:
    std::optional<QString> write(const QJsonObject &entries);

    QString m_filePath;
    QJsonObject m_entries;
};

} // namespace sorvane
