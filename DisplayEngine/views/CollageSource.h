#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// Builds tile image URLs for QML, so the id format lives in C++ only:
//   Image { source: CollageSource.imageUrl(fileUrl) }
class CollageSource : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit CollageSource(QObject *parent = nullptr);

    // "image://collage/<id>" for a local file; empty for anything else.
    Q_INVOKABLE QString imageUrl(const QUrl &fileUrl) const;
};

} // namespace sorvane
