#pragma once

#include <QByteArray>
#include <QString>

namespace sorvane::test {

// The whole file, or nothing when it cannot be read.
QByteArray readAll(const QString &path);

// Whether the file now holds exactly `bytes`.
bool writeAll(const QString &path, const QByteArray &bytes);

// A valid PNG whose header claims width x height RGB pixels but which carries only a few
// (compressed) rows: tiny on disk, enormous once decoded.
QByteArray pngClaiming(quint32 width, quint32 height);

// The most memory this process has held at once, in bytes.
qint64 peakResidentBytes();

} // namespace sorvane::test
