#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace sorvane {

// SHA-256 in lower-case hexadecimal, streamed so that a large video is never held in memory.
class Sha256 {
public:
    static QString ofBytes(QByteArrayView bytes);
    // Nothing when the file cannot be opened or read to its end; `error` then says why.
    static std::optional<QString> ofFile(const QString &filePath, QString *error = nullptr);
};

} // namespace sorvane
