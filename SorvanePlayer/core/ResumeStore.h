#pragma once

#include "core/ResumeRecord.h"

#include <QString>

#include <optional>

namespace sorvane {

// One small JSON file per bundle, named by the SHA-256 of its bundle_id, in a folder
// on the computer: never inside the bundle, which may be read-only. Every failure
// reads as "no record" or a false save; playback never depends on it.
class ResumeStore {
public:
    // A record file is a few hundred bytes; anything far larger was not written by us
    // and is not worth reading into memory.
    static constexpr qint64 maximumFileBytes = 64 * 1024;

    explicit ResumeStore(QString folder);

    // The user's data folder + "SorvanePlayer/resume"; ~/.local/share stands in when
    // the system names no data folder.
    static ResumeStore forCurrentUser();

    const QString &folder() const { return m_folder; }

    // Where the record of this bundle lives; nothing for a missing or empty id.
    std::optional<QString> filePath(const std::optional<QString> &bundleId) const;

    // Nothing when the id is missing or empty, the file is missing, not a plain file,
    // too large, unreadable, not a JSON object, mistyped, or belongs to another id.
    std::optional<ResumeRecord> load(const std::optional<QString> &bundleId) const;

    // Creates the folder, then writes beside the target and renames over it, so a crash
    // leaves the old record or the new one, never half of one. False, with nothing
    // written, for a missing or empty id or a record that could not be read back.
    bool save(const ResumeRecord &record) const;

private:
    QString m_folder;
};

} // namespace sorvane
