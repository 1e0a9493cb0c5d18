#include "bundle/Sha256.h"

#include <openssl/evp.h>

#include <QFile>
#include <QFileInfo>

#include <memory>
#include <vector>

namespace sorvane {

namespace {

struct DigestDeleter {
    void operator()(EVP_MD_CTX *context) const { EVP_MD_CTX_free(context); }
};
using DigestContext = std::unique_ptr<EVP_MD_CTX, DigestDeleter>;

DigestContext newContext()
{
    DigestContext context(EVP_MD_CTX_new());
    if (context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1)
        context.reset();
    return context;
}

QString finish(EVP_MD_CTX *context)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_DigestFinal_ex(context, digest, &length) != 1)
        return {};
    return QString::fromLatin1(QByteArray(reinterpret_cast<const char *>(digest), int(length)).toHex());
}

} // namespace

QString Sha256::ofBytes(QByteArrayView bytes)
{
    DigestContext context = newContext();
    if (!context || EVP_DigestUpdate(context.get(), bytes.data(), size_t(bytes.size())) != 1)
        return {};
    return finish(context.get());
}

std::optional<QString> Sha256::ofFile(const QString &filePath, QString *error)
{
    QFile file(filePath);
    auto failed = [&]() -> std::optional<QString> {
        if (error)
            *error = file.errorString();
        return std::nullopt;
    };
    // A pipe or a device is never opened: reading one would block or never end.
    if (!QFileInfo(filePath).isFile()) {
        if (error)
            *error = QStringLiteral("not a regular file");
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return failed();
    DigestContext context = newContext();
    if (!context)
        return std::nullopt;
    // 1 MiB reads keep system-call overhead negligible next to hashing.
    std::vector<char> buffer(1 << 20);
    for (;;) {
        const qint64 got = file.read(buffer.data(), qint64(buffer.size()));
        if (got < 0)
            return failed();
        if (got == 0)
            break;
        if (EVP_DigestUpdate(context.get(), buffer.data(), size_t(got)) != 1)
            return std::nullopt;
    }
    const QString hex = finish(context.get());
    if (hex.isEmpty())
        return std::nullopt;
    return hex;
}

} // namespace sorvane
