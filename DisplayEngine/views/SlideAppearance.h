#pragma once

#include <QColor>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// How slides are drawn, from the bundle's playback preferences; fixed for a run.
struct SlideAppearance {
    Q_GADGET
    QML_VALUE_TYPE(slideAppearance)
    Q_PROPERTY(QString scaling MEMBER scaling)
    Q_PROPERTY(QString filter MEMBER filter)
    Q_PROPERTY(QColor background MEMBER background)
    Q_PROPERTY(bool crossfade MEMBER crossfade)
    Q_PROPERTY(double transitionSeconds MEMBER transitionSeconds)
    Q_PROPERTY(bool showCaption MEMBER showCaption)
    Q_PROPERTY(bool showProgress MEMBER showProgress)

public:
    QString scaling = QStringLiteral("fit_to_screen");
    QString filter = QStringLiteral("none");
    QColor background = Qt::black;
    bool crossfade = true;
    double transitionSeconds = 0.6;
    bool showCaption = true;
    bool showProgress = true;

    bool operator==(const SlideAppearance &) const = default;
};

} // namespace sorvane
