#pragma once

#include <QString>
#include <QUrl>

namespace sorvane {

// Paths a stick can really hold, with every character that means something in a URL.
inline const QString kPaths[] = {
    QStringLiteral("/media/usb/DCIM/IMG_0001.JPG"),
    QStringLiteral("/media/usb/Summer holiday/beach 1.jpg"),
    QStringLiteral("/photos/#1 best.png"),
    QStringLiteral("/photos/100% real.jpg"),
    QStringLiteral("/photos/why?.jpg"),
    QStringLiteral("/photos/a+b&c=d;e,f@g:h.jpg"),
    QStringLiteral("/photos/%20 looks escaped %2F%25.jpg"),
    QStringLiteral("/photos/./dots/../..jpg"),
    QStringLiteral("/photos/back\\slash [1] {2} <3> \"q\" 'a'.jpg"),
    QString::fromUtf8("/fotos/\xC3\x85lesund/\xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x99\x82.jpg"),
};

// The id exactly as QML's Image hands it to a provider for `url`.
inline QString idAsQmlSeesIt(const QString &url)
{
    return QUrl(url).toString(QUrl::RemoveScheme | QUrl::RemoveAuthority).mid(1);
}

} // namespace sorvane
