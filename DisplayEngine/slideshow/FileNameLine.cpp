#include "slideshow/FileNameLine.h"

#include <QDir>

namespace sorvane {

namespace {

QString pathOf(const QUrl &url)
{
    return url.isLocalFile() ? url.toLocalFile() : url.path(QUrl::FullyDecoded);
}

// Without the trailing separators a folder URL may carry.
QString trimmed(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

QString lastPart(const QString &path)
{
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QString folderAndFile(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash <= 0)
        return lastPart(path);
    const QString folder = lastPart(path.left(slash));
    return folder.isEmpty() ? lastPart(path) : folder + u'/' + lastPart(path);
}

bool unsafe(QChar c)
{
    const char16_t u = c.unicode();
    // The embeddings, overrides and isolates that reorder the text around them.
    const bool bidiControl = (u >= 0x202A && u <= 0x202E) || (u >= 0x2066 && u <= 0x2069);
    return c.category() == QChar::Other_Control || u == 0x2028 || u == 0x2029 || bidiControl;
}

} // namespace

QString FileNameLine::text(const ImageItem &item, FileDisplayFormat format)
{
    const QString path = trimmed(pathOf(item.url()));
    QString text;
    switch (format) {
    case FileDisplayFormat::filenameOnly:
        text = lastPart(path);
        break;
    case FileDisplayFormat::fullPath:
        text = QDir::toNativeSeparators(path);
        break;
    case FileDisplayFormat::folderAndFilename:
        text = folderAndFile(path);
        break;
    }
    if (text.isEmpty() || text == u"/")
        text = item.displayName();
    return printable(text);
}

QString FileNameLine::printable(const QString &text)
{
    QString out = text;
    for (QChar &c : out) {
        if (unsafe(c))
            c = QChar::ReplacementCharacter;
    }
    return out;
}

} // namespace sorvane
