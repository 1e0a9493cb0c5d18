#pragma once

#include "bundle/BundleManifest.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <initializer_list>
#include <utility>

namespace sorvane::test {

// A real bundle in a temporary folder: files are written to disk, and the
// manifest is built as a typed value and serialized with the engine's writer.
class BundleFixture {
public:
    BundleFixture();

    QString root() const { return m_dir.path(); }
    QString path(const QString &relative) const { return m_dir.filePath(relative); }
    QString manifestPath() const { return path(QStringLiteral("bundle.json")); }

    // Writes a file (making its folders) and returns its absolute path.
    QString writeFile(const QString &relative, const QByteArray &bytes) const;

    // An asset record for bytes that `writeFile` put (or will put) at `relative`.
    static BundleAsset assetFor(const QString &relative, const QByteArray &bytes);

    // Writes a file of `size` deterministic bytes for each tier and adds an image item
    // (media_type "image") whose assets describe those files exactly.
    BundleItem &addItem(const QString &id, std::initializer_list<std::pair<QString, int>> tierSizes,
        const QString &mediaType = QStringLiteral("image"));

    // A manifest that opens: format, versions and an (empty) items array.
    BundleManifest manifest;

    void writeManifest() const;
    void writeManifestText(const QByteArray &text) const;

private:
    QTemporaryDir m_dir;
};

// Deterministic filler bytes, different for each seed.
QByteArray fillerBytes(int size, int seed);

} // namespace sorvane::test
