#pragma once

#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace sorvane {

// The item every window shows, as the views read it. `serial` changes with every
// show, so that a view can tell a new show of the same file from the old one and
// so that reports about a file that is no longer on screen can be ignored.
struct Slide {
    Q_GADGET
    QML_VALUE_TYPE(slide)
    Q_PROPERTY(QUrl source MEMBER source)
    Q_PROPERTY(QUrl posterSource MEMBER posterSource)
    Q_PROPERTY(bool isVideo MEMBER isVideo)
    Q_PROPERTY(bool isAnimated MEMBER isAnimated)
    Q_PROPERTY(int serial MEMBER serial)
    Q_PROPERTY(QString caption MEMBER caption)
    Q_PROPERTY(QString progress MEMBER progress)

public:
    QUrl source;
    QUrl posterSource; // a video's still, shown until its first frame
    bool isVideo = false;
    bool isAnimated = false;
    int serial = 0;
    QString caption;
    QString progress;

    bool operator==(const Slide &) const = default;
};

} // namespace sorvane
