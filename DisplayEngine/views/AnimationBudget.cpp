#include "views/AnimationBudget.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

namespace sorvane {

namespace {

// A GIF's logical screen, which every frame is composed on; the reader reports the
// first frame's size instead, and that may be one pixel.
QSize gifScreen(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(10);
    if (head.size() < 10 || !head.startsWith("GIF8"))
        return {};
    const auto *bytes = reinterpret_cast<const uchar *>(head.constData());
    return QSize(qFromLittleEndian<quint16>(bytes + 6), qFromLittleEndian<quint16>(bytes + 8));
}

} // namespace

QString AnimationBudget::refusal(const QString &path)
{
    QImageReader reader(path);
    // Only headers and the frame count are read; no frame is decoded here.
    reader.setAllocationLimit(1);
    const QSize canvas = reader.size().expandedTo(gifScreen(path));
    if (!canvas.isValid() || canvas.isEmpty())
        return {}; // not readable as an image: the view reports its own failure
    return refusal(canvas, reader.imageCount());
}

QString AnimationBudget::refusal(QSize canvas, int frames)
{
    const qint64 frameBytes = qint64(canvas.width()) * canvas.height() * 4;
    // An unknown count is taken as two frames: at least the canvas and the frame on show.
    const qint64 held = qMax(frames, 2);
    if (frameBytes <= kMaxBytes / held)
        return {};
    return QStringLiteral("its %1 x %2 canvas with %3 frame(s) needs more than %4 MiB to animate")
        .arg(canvas.width())
        .arg(canvas.height())
        .arg(frames < 0 ? QStringLiteral("an unknown number of") : QString::number(frames))
        .arg(kMaxBytes >> 20);
}

} // namespace sorvane
