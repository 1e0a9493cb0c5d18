#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace sorvane {

// Where the viewer stood in one bundle and which style was on screen, kept on the
// computer so that a restart continues at the same photo.
struct ResumeRecord {
    std::optional<QString> bundleId;
    qint64 itemIndex = 0;
    QDateTime savedUtc;
    // Raw PlayerStyle text; kept as text so that a style this build does not know survives.
    std::optional<QString> style;

    // Keys bundle_id, item_index, saved_utc (ISO 8601 UTC, whole seconds) and style;
    // absent optionals are left out.
    QJsonObject toJson() const;

    // Nothing when a member has the wrong type: item_index must be an integral number,
    // saved_utc a readable timestamp, bundle_id and style strings when present (null
    // reads as absent). A half-understood record is worse than none.
    static std::optional<ResumeRecord> fromJson(const QJsonObject &json);

    // The saved position when it still lies inside a play order of this length; a
    // bundle that lost items since the save must not start past its end.
    std::optional<qint64> startPosition(qsizetype playOrderLength) const;

    friend bool operator==(const ResumeRecord &, const ResumeRecord &) = default;
};

} // namespace sorvane
