#include "slideshow/PreferenceStore.h"

#include "EngineLog.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <cmath>
#include <limits>

namespace sorvane {
namespace {

const QString typeKey = QStringLiteral("type");
const QString valueKey = QStringLiteral("value");

// JSON has no numbers for these, and a NaN must come back as a NaN (it has a
// reading rule of its own), not as a missing value. Qt writes -0.0 as 0.
const QString notANumber = QStringLiteral("nan");
const QString negativeZero = QStringLiteral("-0");
const QString positiveInfinity = QStringLiteral("inf");
const QString negativeInfinity = QStringLiteral("-inf");

QJsonValue encodeDouble(double value)
{
    if (std::isnan(value))
        return notANumber;
    if (std::isinf(value))
        return value > 0 ? positiveInfinity : negativeInfinity;
    if (value == 0 && std::signbit(value))
        return negativeZero;
    return value;
}

std::optional<double> decodeDouble(const QJsonValue &value)
{
    if (value.isDouble())
        return value.toDouble();
    const QString text = value.toString();
    if (text == notANumber)
        return std::numeric_limits<double>::quiet_NaN();
    if (text == positiveInfinity)
        return std::numeric_limits<double>::infinity();
    if (text == negativeInfinity)
        return -std::numeric_limits<double>::infinity();
    if (text == negativeZero)
        return -0.0;
    return std::nullopt;
}

std::optional<qint64> decodeInteger(const QJsonValue &value)
{
    // toInteger() falls back to its argument for fractions and out-of-range
    // numbers; two different fallbacks agree only on a true integer.
    const qint64 integer = value.toInteger(0);
    if (!value.isDouble() || integer != value.toInteger(1))
        return std::nullopt;
    return integer;
}

QJsonObject encode(const PreferenceValue &value)
{
    struct Encoder {
        QJsonObject operator()(bool v) const { return tagged(QStringLiteral("bool"), v); }
        QJsonObject operator()(qint64 v) const { return tagged(QStringLiteral("integer"), v); }
        QJsonObject operator()(double v) const { return tagged(QStringLiteral("double"), encodeDouble(v)); }
        QJsonObject operator()(const QString &v) const { return tagged(QStringLiteral("string"), v); }
        QJsonObject operator()(const QJsonObject &v) const { return tagged(QStringLiteral("object"), v); }
        QJsonObject operator()(const QJsonArray &v) const { return tagged(QStringLiteral("array"), v); }

        static QJsonObject tagged(const QString &type, const QJsonValue &v) { return {{typeKey, type}, {valueKey, v}}; }
    };
    return std::visit(Encoder {}, value);
}

// Nothing for an entry this version cannot read; it is kept in the file all the same.
std::optional<PreferenceValue> decode(const QJsonValue &entry)
{
    const QJsonObject object = entry.toObject();
    const QString type = object.value(typeKey).toString();
    const QJsonValue value = object.value(valueKey);
    if (type == QLatin1StringView("bool") && value.isBool())
        return value.toBool();
    if (type == QLatin1StringView("integer")) {
        if (const std::optional<qint64> integer = decodeInteger(value))
            return *integer;
        return std::nullopt;
    }
    if (type == QLatin1StringView("double")) {
        if (const std::optional<double> number = decodeDouble(value))
            return *number;
        return std::nullopt;
    }
    if (type == QLatin1StringView("string") && value.isString())
        return value.toString();
    if (type == QLatin1StringView("object") && value.isObject())
        return value.toObject();
    if (type == QLatin1StringView("array") && value.isArray())
        return value.toArray();
    return std::nullopt;
}

// The file's entries; empty when it is missing or cannot be opened. `damaged` tells a
// file with something in it that is not a JSON object.
QJsonObject readEntries(const QString &filePath, bool *damaged = nullptr)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (damaged)
        *damaged = !bytes.isEmpty() && (error.error != QJsonParseError::NoError || !document.isObject());
    return document.object();
}

// The entries a write starts from. A damaged file is first set aside beside itself, so
// that the write replacing it does not destroy what a person may still recover.
QJsonObject entriesBeforeWrite(const QString &filePath)
{
    bool damaged = false;
    QJsonObject entries = readEntries(filePath, &damaged);
    if (!damaged)
        return entries;
    const QString stem = filePath + QStringLiteral(".unreadable-")
        + QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    for (int attempt = 1; attempt <= 100; ++attempt) {
        const QString kept = attempt == 1 ? stem : stem + QLatin1Char('-') + QString::number(attempt);
        if (!QFileInfo::exists(kept) && QFile::rename(filePath, kept)) {
            qCWarning(
                lcEngine, "%s could not be read; it was kept as %s", qUtf8Printable(filePath), qUtf8Printable(kept));
            break;
        }
    }
    return entries;
}

} // namespace

PreferenceStore::PreferenceStore(const QString &folder)
    : m_filePath(QDir(folder).filePath(QStringLiteral("preferences.json"))), m_entries(readEntries(m_filePath))
{
}

QString PreferenceStore::standardFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
}

std::optional<PreferenceValue> PreferenceStore::value(const QString &key) const
{
    const auto found = m_entries.constFind(key);
    if (found == m_entries.constEnd())
        return std::nullopt;
    return decode(*found);
}

std::optional<QString> PreferenceStore::setValues(const QList<Entry> &entries)
{
    QJsonObject updated = entriesBeforeWrite(m_filePath);
    for (const auto &[key, value] : entries)
        updated.insert(key, encode(value));
    return write(updated);
}

std::optional<QString> PreferenceStore::remove(const QString &key)
{
    // A damaged file holds no key, so nothing is written and it stays as it is.
    QJsonObject updated = readEntries(m_filePath);
    if (!updated.contains(key)) {
        m_entries = updated;
        return std::nullopt;
    }
    updated.remove(key);
    return write(updated);
}

std::optional<QString> PreferenceStore::write(const QJsonObject &entries)
{
    const QString folder = QFileInfo(m_filePath).absolutePath();
    if (!QDir().mkpath(folder))
        return QStringLiteral("cannot create the folder %1").arg(folder);
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    const QByteArray bytes = QJsonDocument(entries).toJson(QJsonDocument::Indented);
    if (file.write(bytes) != bytes.size())
        return file.errorString();
    if (!file.commit())
        return file.errorString();
    m_entries = entries;
    return std::nullopt;
}

} // namespace sorvane
