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
    // Photo filters are drawn by a shader over the slide when the scene is drawn on the GPU;
    // in software they are applied to the decoded pixels instead.
    Q_PROPERTY(bool filtersOnGpu READ filtersOnGpu CONSTANT)

public:
    explicit SlideSource(QObject *parent = nullptr);

    bool filtersOnGpu() const { return m_filtersOnGpu; }

    // "image://slide/<id>" for a local file, with the bundle's wire values for scaling and
    // filter (left out when the GPU draws filters); empty (and logged) when the URL is not a
    // local file or a value is unknown.
    Q_INVOKABLE QString imageUrl(const QUrl &fileUrl, const QString &scalingRaw, const QString &filterRaw) const;
    // Empty when the animation at fileUrl may be played; otherwise why not (AnimationBudget).
    Q_INVOKABLE QString animationRefusal(const QUrl &fileUrl) const;

private:
    bool m_filtersOnGpu;
};

} // namespace sorvane
