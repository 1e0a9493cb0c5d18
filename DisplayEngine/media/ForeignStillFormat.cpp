#include "media/ForeignStillFormat.h"

#include <QFile>
#include <QFileInfo>

namespace sorvane {

bool ForeignStillFormat::sniff(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(16);
    // ISO boxes that open with "ftyp" (HEIF and AVIF brands), or either form of JPEG XL.
    return head.mid(4, 4) == "ftyp" || head.startsWith(QByteArray("\xff\x0a"))
        || head.startsWith(QByteArray("\0\0\0\x0cJXL ", 8));
}

} // namespace sorvane
