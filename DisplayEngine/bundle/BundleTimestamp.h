#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace sorvane {

// The manifest's ISO 8601 UTC times: read with or without fractional seconds,
// written without.
class BundleTimestamp {
public:
    // Absent, blank (spaces and tabs only) or unparsable text reads as no date.
    // Accepts the internet date-time form ending in "Z" or a "+hh:mm"/"-hh:mm" offset;
    // the date returned is in UTC.
    static std::optional<QDateTime> parse(const std::optional<QString> &text);

    // For example "2024-05-01T12:00:00Z": UTC, fractional seconds dropped.
    static QString format(const QDateTime &date);
};

} // namespace sorvane
