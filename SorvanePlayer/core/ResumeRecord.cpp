#include "core/ResumeRecord.h"

#include "bundle/BundleTimestamp.h"

#include <QJsonValue>

namespace sorvane {

namespace {

const QString bundleIdKey = QStringLiteral("bundle_id");
const QString itemIndexKey = QStringLiteral("item_index");
const QString savedUtcKey = QStringLiteral("saved_utc");
const QString styleKey = QStringLiteral("style");

// Absent and null read as no text; any other non-string is a fault in the file.
bool readOptionalString(const QJsonValue &value, std::optional<QString> &out)
{
    if (value.isUndefined() || value.isNull()) {
        out.reset();
        return true;
    }
    if (!value.isString())
        return false;
    out = value.toString();
    return true;
}

bool readInteger(const QJsonValue &value, qint64 &out)
{
    if (!value.isDouble())
        return false;
    // toInteger falls back to its default for fractions and out-of-range numbers, so
    // two different defaults tell "not an integer" apart from a genuine value.
    const qint64 first = value.toInteger(0);
    if (first != value.toInteger(1))
        return false;
    out = first;
    return true;
}

} // namespace

QJsonObject ResumeRecord::toJson() const
{
    QJsonObject json;
    if (bundleId)
        json.insert(bundleIdKey, *bundleId);
    json.insert(itemIndexKey, itemIndex);
    json.insert(savedUtcKey, BundleTimestamp::format(savedUtc));
    if (style)
        json.insert(styleKey, *style);
    return json;
}

std::optional<ResumeRecord> ResumeRecord::fromJson(const QJsonObject &json)
{
    ResumeRecord record;
    if (!readOptionalString(json.value(bundleIdKey), record.bundleId)
        || !readInteger(json.value(itemIndexKey), record.itemIndex)
        || !readOptionalString(json.value(styleKey), record.style))
        return std::nullopt;

    const QJsonValue saved = json.value(savedUtcKey);
    if (!saved.isString())
        return std::nullopt;
    const std::optional<QDateTime> savedUtc = BundleTimestamp::parse(saved.toString());
    if (!savedUtc)
        return std::nullopt;
    record.savedUtc = *savedUtc;
    return record;
}

std::optional<qint64> ResumeRecord::startPosition(qsizetype playOrderLength) const
{
    if (itemIndex < 0 || itemIndex >= playOrderLength)
        return std::nullopt;
    return itemIndex;
}

} // namespace sorvane
