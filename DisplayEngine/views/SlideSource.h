#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// Builds slide image URLs for QML, so the id format lives in C++ only:
//   Image { source: SlideSource.imageUrl(fileUrl, "fit_to_screen", "sepia") }
class SlideSource : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit SlideSource(QObject *parent = nullptr);

    // "image://slide/<id>" for a local file, with the bundle's wire values for scaling and
    // filter; empty (and logged) when the URL is not a local file or a value is unknown.
    Q_INVOKABLE QString imageUrl(const QUrl &fileUrl, const QString &scalingRaw, const QString &filterRaw) const;
    // Empty when the animation at fileUrl may be played; otherwise why not (AnimationBudget).
    Q_INVOKABLE QString animationRefusal(const QUrl &fileUrl) const;
};

} // namespace sorvane
