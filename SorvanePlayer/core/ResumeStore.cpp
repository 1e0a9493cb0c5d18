#include "core/ResumeStore.h"

#include "bundle/Sha256.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace sorvane {

ResumeStore::ResumeStore(QString folder) : m_folder(std::move(folder)) { }

ResumeStore ResumeStore::forCurrentUser()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return ResumeStore(base + QStringLiteral("/SorvanePlayer/resume"));
}

std::optional<QString> ResumeStore::filePath(const std::optional<QString> &bundleId) const
{
    if (!bundleId || bundleId->isEmpty())
        return std::nullopt;
    return m_folder + u'/' + Sha256::ofBytes(bundleId->toUtf8()) + QStringLiteral(".json");
}

std::optional<ResumeRecord> ResumeStore::load(const std::optional<QString> &bundleId) const
{
    const std::optional<QString> path = filePath(bundleId);
    if (!path)
        return std::nullopt;

    // Only a plain file: opening a pipe or a device put in its place could block or never end.
    const QFileInfo info(*path);
    if (!info.isFile() || info.size() > maximumFileBytes)
        return std::nullopt;

    QFile file(*path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // Read one byte past the limit in case the file grew since it was measured.
    const QByteArray bytes = file.read(maximumFileBytes + 1);
    if (bytes.size() > maximumFileBytes || file.error() != QFileDevice::NoError)
        return std::nullopt;

    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;

    std::optional<ResumeRecord> record = ResumeRecord::fromJson(document.object());
    // A matching file name is not enough: a hash collision or a hand-edited id must not resume.
    if (!record || record->bundleId != bundleId)
        return std::nullopt;
    return record;
}

bool ResumeStore::save(const ResumeRecord &record) const
{
    const std::optional<QString> path = filePath(record.bundleId);
    if (!path)
        return false;

    const QJsonObject json = record.toJson();
    // An invalid date writes a saved_utc that load refuses; better to keep the old record.
    if (!ResumeRecord::fromJson(json))
        return false;
    const QByteArray bytes = QJsonDocument(json).toJson(QJsonDocument::Compact);

    if (!QDir().mkpath(m_folder))
        return false;

    QSaveFile file(*path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

} // namespace sorvane
